// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Simulator.h"

#include "BulletinServer.h"
#include "ConsoleServer.h"
#include "OpenWatcher.h"
#include "PseudoTerminal.h"
#include "SimConsole.h"
#include "SimDevice.h"
#include "Trace.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <utility>

namespace {

constexpr qsizetype lineCapacity = 1024; // bytes the device holds of a request

qint64 nowMs()
{
    return QDeadlineTimer::current(Qt::PreciseTimer).deadline();
}

} // namespace

Simulator::Simulator(const SimOptions &options, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_trace(std::make_unique<Trace>())
    , m_device(std::make_unique<SimDevice>(options))
    , m_port(std::make_unique<PseudoTerminal>())
    , m_console(std::make_unique<SimConsole>(*this))
    , m_pacer(options.baudPace)
{
    connect(m_device.get(), &SimDevice::spoke, this, &Simulator::speak);
    connect(m_port.get(), &PseudoTerminal::received, this, &Simulator::onReceived);
    connect(&m_pacer, &WirePacer::leaving, m_port.get(), &PseudoTerminal::write);
    m_answerTimer.setSingleShot(true);
    m_answerTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_answerTimer, &QTimer::timeout, this, &Simulator::sendDueAnswers);
    m_autoWakeTimer.setSingleShot(true);
    connect(&m_autoWakeTimer, &QTimer::timeout, this, [this] { m_device->wakeUp(); });
    if (options.autoWakeMs && m_device->canSleep()) {
        m_openWatcher = std::make_unique<OpenWatcher>();
        connect(m_openWatcher.get(), &OpenWatcher::opened, this, &Simulator::onClientOpened);
    }
}

Simulator::~Simulator()
{
    removeLink();
}

bool Simulator::start()
{
    if (!m_options.traceFile.isEmpty() && !m_trace->open(m_options.traceFile)) {
        m_errorString = m_trace->errorString();
        return false;
    }
    if (!m_options.consoleSocket.isEmpty()) {
        m_consoleServer = std::make_unique<ConsoleServer>([this](const QString &line) { return execute(line); });
        if (!m_consoleServer->listen(m_options.consoleSocket)) {
            m_errorString = m_consoleServer->errorString();
            return false;
        }
    }
    if (m_options.bulletinPort) {
        m_bulletinServer = std::make_unique<BulletinServer>(fleet(m_options.seed));
        if (!m_bulletinServer->listen(*m_options.bulletinPort)) {
            m_errorString = QStringLiteral("Bulletins: ") + m_bulletinServer->errorString();
            return false;
        }
    }
    return plug(); // last: who sees the port finds the console too
}

QString Simulator::portPath() const
{
    return m_port->path();
}

QString Simulator::bulletinUrl() const
{
    return m_bulletinServer ? m_bulletinServer->url() : QString();
}

QString Simulator::execute(const QString &consoleLine)
{
    m_trace->write('#', consoleLine.toUtf8());
    return m_console->execute(consoleLine);
}

void Simulator::sendGarbage(int count)
{
    // Bytes from 0xF8 on occur nowhere in UTF-8.
    QRandomGenerator random(m_options.seed);
    QByteArray bytes;
    for (int i = 0; i < count; ++i) {
        bytes += char(random.bounded(0xF8, 0x100));
    }
    sendLine(bytes, false);
}

void Simulator::speak(const QString &line)
{
    sendLine(line.toUtf8(), false);
}

void Simulator::unplug()
{
    removeLink();
    m_autoWakeTimer.stop();
    m_answerTimer.stop();
    m_answers.clear();
    m_pacer.clear();
    m_incoming.clear();
    m_overlong = false;
    m_port->close();
    m_device->cutPower();
}

bool Simulator::plug()
{
    if (!m_port->open()) {
        m_errorString = m_port->errorString();
        return false;
    }
    if (m_openWatcher && !m_openWatcher->watch(m_port->path())) {
        m_errorString = m_openWatcher->errorString();
        m_port->close();
        return false;
    }
    if (!makeLink()) {
        m_port->close();
        return false;
    }
    Q_EMIT plugged(m_port->path());
    return true;
}

bool Simulator::isPlugged() const
{
    return m_port->isOpen();
}

bool Simulator::setBulletinMode(BulletinMode mode)
{
    if (m_bulletinServer) {
        m_bulletinServer->setMode(mode);
    }
    return m_bulletinServer != nullptr;
}

void Simulator::onReceived(const QByteArray &data)
{
    for (const char byte : data) {
        if (byte == '\r' || byte == '\n') {
            const QByteArray line = std::exchange(m_incoming, {});
            if (std::exchange(m_overlong, false)) {
                m_trace->write('<', "(a line longer than the device can hold)");
                sendLine(Answer::error(ErrorCode::Format).lines.first().toLatin1(), false);
            } else if (!line.isEmpty()) {
                onRequest(line);
            }
        } else if (m_incoming.size() < lineCapacity) {
            m_incoming += byte;
        } else {
            m_overlong = true;
        }
    }
}

void Simulator::onRequest(const QByteArray &line)
{
    m_trace->write('<', line);
    const QString request = QString::fromLatin1(line);
    Q_EMIT requestReceived(request);
    carryOutOrders(request);
    if (m_faults.muted > 0) {
        --m_faults.muted;
        return;
    }
    if (!m_device->isListening()) {
        return;
    }
    Answer answer;
    if (const auto code = std::exchange(m_faults.error, std::nullopt)) {
        answer = Answer::error(ErrorCode(*code));
    } else {
        answer = m_device->request(request);
    }
    // The device speaks in turn: an answer that is late holds up those behind it in the queue.
    const qint64 due = nowMs() + m_options.latencyMs + std::exchange(m_faults.lateMs, 0);
    m_answers.push_back({answer.lines, std::move(answer.afterwards), due, std::exchange(m_faults.split, false)});
    if (!m_answerTimer.isActive()) {
        sendDueAnswers();
    }
}

void Simulator::carryOutOrders(const QString &request)
{
    std::vector<Order> due;
    std::vector<Order> others;
    for (const Order &order : std::exchange(m_orders, {})) { // before they run: one may add another
        if (request.startsWith(order.request)) {
            due.push_back(order);
        } else {
            others.push_back(order);
        }
    }
    m_orders = std::move(others);
    for (const Order &order : due) {
        execute(order.consoleLine);
    }
}

void Simulator::onClientOpened()
{
    m_autoWakeTimer.start(*m_options.autoWakeMs);
}

void Simulator::sendDueAnswers()
{
    while (!m_answers.empty() && m_answers.front().dueMs <= nowMs()) {
        DelayedAnswer answer = std::move(m_answers.front());
        m_answers.pop_front();
        for (const QString &line : std::as_const(answer.lines)) {
            const bool isLast = &line == &answer.lines.constLast();
            sendLine(line.toUtf8(), answer.split,
                     isLast ? std::exchange(answer.afterwards, {}) : std::function<void()>());
        }
    }
    if (!m_answers.empty()) {
        m_answerTimer.start(int(std::max<qint64>(m_answers.front().dueMs - nowMs(), 1)));
    }
}

void Simulator::sendLine(const QByteArray &line, bool split, std::function<void()> sent)
{
    if (!m_port->isOpen()) {
        return;
    }
    m_trace->write('>', line);
    if (split) {
        m_pacer.sendSplit(line + "\r\n", std::move(sent));
    } else {
        m_pacer.send(line + "\r\n", std::move(sent));
    }
}

bool Simulator::makeLink()
{
    if (m_options.link.isEmpty()) {
        return true;
    }
    const QFileInfo old(m_options.link);
    if (old.exists() && !old.isSymLink()) {
        m_errorString = QStringLiteral("%1 exists and is no link").arg(m_options.link);
        return false;
    }
    QFile::remove(m_options.link);
    if (!QFile::link(m_port->path(), m_options.link)) {
        m_errorString = QStringLiteral("Cannot make the link %1").arg(m_options.link);
        return false;
    }
    return true;
}

void Simulator::removeLink()
{
    // Another simulator may have taken the name over since.
    if (!m_options.link.isEmpty() && m_port->isOpen() && QFile::symLinkTarget(m_options.link) == m_port->path()) {
        QFile::remove(m_options.link);
    }
}
