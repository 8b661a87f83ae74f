// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SerialPortManager.h"

#include "PortWatcher.h"
#include "ProcessLog.h"
#include "SerialLine.h"

#include <QMetaEnum>
#include <QPointer>
#include <QScopedValueRollback>
#include <QSettings>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int loggedErrorsMax = 20;      // per opening: some lines report the same error without end
constexpr qint64 lookIntervalMin = 1000; // milliseconds between two looks at a port that reports errors

bool hasPort(const QList<ListedPort> &ports, const QString &name)
{
    return std::any_of(ports.cbegin(), ports.cend(), [&](const ListedPort &port) { return port.name == name; });
}
} // namespace

SerialPortManager::SerialPortManager(QObject *parent)
    : QObject(parent), m_port(new QSerialPort(this)), portListModel(new QStringListModel(this))
{
    // Queued, because the port emits no further readyRead while one is being handled: a slot that waits for an answer
    // would wait in vain.
    connect(m_port, &QSerialPort::readyRead, this, &SerialPortManager::onDataRead, Qt::QueuedConnection);
    connect(m_port, &QSerialPort::errorOccurred, this, &SerialPortManager::onSerialPortError);
    enumerate();
}

void SerialPortManager::enumerate()
{
    QStringList names;
    m_listed = m_systemPorts();
    for (const ListedPort &port : qAsConst(m_listed)) {
        names.append(port.name);
    }
    const QSettings config(u"config.ini"_s, QSettings::IniFormat);
    const QStringList extraPorts = config.value("Serial/extraPorts").toStringList();
    for (const QString &port : extraPorts) {
        if (!port.trimmed().isEmpty()) {
            names.append(port.trimmed());
        }
    }
    portListModel->setStringList(names);
    Q_EMIT portListModelChanged();
}

void SerialPortManager::followAdapters()
{
    if (m_watcher == nullptr) {
        m_watcher = new PortWatcher(this);
        connect(m_watcher, &PortWatcher::changed, this, &SerialPortManager::onPortsChanged);
    }
}

void SerialPortManager::onPortsChanged()
{
    if (!m_port->isOpen() && m_systemPorts() != m_listed) {
        enumerate();
    }
}

int SerialPortManager::rowOf(const QString &portName) const
{
    return static_cast<int>(portListModel->stringList().indexOf(portName));
}

QString SerialPortManager::lastPort() const
{
    const ListedPort last = ListedPort::last();
    const QString name = last.nameIn(m_listed);
    // A port of config.ini has no adapter that is known.
    return name.isEmpty() && last.serialNumber.isEmpty() && rowOf(last.name) >= 0 ? last.name : name;
}

void SerialPortManager::rememberPort(const QString &portName)
{
    ListedPort used;
    used.name = portName;
    for (const ListedPort &port : qAsConst(m_listed)) {
        if (port.name == portName) {
            used = port;
        }
    }
    used.remember();
}

void SerialPortManager::setSystemPorts(const std::function<QList<ListedPort>()> &list)
{
    m_systemPorts = list;
    enumerate();
}

void SerialPortManager::configure(const PortSettings &settings)
{
    m_port->setBaudRate(settings.baudRate, QSerialPort::AllDirections);
    m_port->setDataBits(static_cast<QSerialPort::DataBits>(settings.dataBits));
    m_port->setParity(static_cast<QSerialPort::Parity>(settings.parity));
    m_port->setStopBits(static_cast<QSerialPort::StopBits>(settings.stopBits));
    m_port->setFlowControl(static_cast<QSerialPort::FlowControl>(settings.flowControl));
}

bool SerialPortManager::open(const QString &portName)
{
    if (m_port->isOpen()) {
        return false;
    }
    m_lineLost = false;
    m_loggedErrors = 0;
    m_openHelp.clear();
    m_port->setPortName(portName);
    if (!m_port->open(QIODevice::ReadWrite)) {
        m_lineLost = false; // one report is enough
        QStringList reasons{m_port->errorString(), serialLineOpenProblem(portName)};
        reasons.removeDuplicates();
        qCCritical(lcWire).noquote() << "Unable to open port" << portName << reasons.join(u' ');
        m_openHelp = portHelp(serialPortRefusal(*m_port));
        Q_EMIT serialError("Unable to open port "_L1 + portName);
        return false;
    }
    m_port->clear(); // what waited there answers nobody
    m_listedAs = hasPort(m_listed, portName) ? portName : QString();
    m_sinceLook.invalidate();
    m_answeredStatusQuery = answersStatusQuery();
    return true;
}

void SerialPortManager::write(const QByteArray &data)
{
    if (m_port->write(data) == -1) {
        qCCritical(lcWire).noquote() << "Failed to write data to port:" << m_port->errorString();
    }
}

void SerialPortManager::close()
{
    m_lineLost = false;
    if (m_port->isOpen()) {
        m_port->close();
    }
}

void SerialPortManager::onDataRead()
{
    const QPointer<SerialPortManager> self(this); // a slot may delete what it hears from
    // cppcheck-suppress knownConditionTrueFalse ; see above
    while (self && lineArrived()) {
        Q_EMIT doneReading(QString::fromUtf8(m_port->readLine().trimmed()));
    }
}

bool SerialPortManager::lineArrived()
{
    // canReadLine() looks through all that waits, which for a line that grows by a few bytes at a time and never ends
    // takes longer each time. It does not look at what a transaction has read already, so what was seen stays read in
    // an open transaction, and comes back when the end of the line arrives.
    const bool arrived = m_port->canReadLine();
    if (arrived && m_port->isTransactionStarted()) {
        m_port->rollbackTransaction();
    } else if (!arrived && m_port->bytesAvailable() > 0) {
        if (!m_port->isTransactionStarted()) {
            m_port->startTransaction();
        }
        m_port->skip(m_port->bytesAvailable());
    }
    return arrived;
}

void SerialPortManager::onSerialPortError(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::NoError || m_lineLost || m_queryingStatus) {
        return;
    }
    if (m_loggedErrors < loggedErrorsMax) {
        ++m_loggedErrors;
        const char *const key = QMetaEnum::fromType<QSerialPort::SerialPortError>().valueToKey(error);
        qCCritical(lcWire).noquote().nospace() << key << ": " << m_port->errorString();
    }
    // What a lost line reports is a matter of luck, but it reports it without end. It cannot be closed from here: the
    // port is in the middle of an open or a read.
    if (isLost(error)) {
        m_lineLost = true;
        QMetaObject::invokeMethod(this, &SerialPortManager::onLineLost, Qt::QueuedConnection);
    }
}

bool SerialPortManager::isLost(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::ResourceError || serialLineHungUp(*m_port)) {
        return true;
    }
    if (error == QSerialPort::TimeoutError || !m_port->isOpen()) {
        return false;
    }
    // Some drivers report a pulled adapter as an unknown error, and without end.
    if (m_sinceLook.isValid() && m_sinceLook.elapsed() < lookIntervalMin) {
        return false;
    }
    m_sinceLook.start();
    return (!m_listedAs.isEmpty() && !hasPort(m_systemPorts(), m_listedAs)) ||
           (m_answeredStatusQuery && !answersStatusQuery());
}

bool SerialPortManager::answersStatusQuery()
{
    const QScopedValueRollback<bool> querying(m_queryingStatus, true);
    m_port->clearError();
    m_port->pinoutSignals(); // which a pseudo terminal does not have
    const bool isAnswered = m_port->error() == QSerialPort::NoError;
    m_port->clearError();
    return isAnswered;
}

void SerialPortManager::onLineLost()
{
    if (!m_lineLost || !m_port->isOpen()) {
        return; // closed in the meantime, and maybe opened again
    }
    m_port->close();
    Q_EMIT serialError(u"The evaluation kit is not reachable, it may have been unplugged"_s);
}
