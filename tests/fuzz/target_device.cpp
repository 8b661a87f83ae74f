// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// What a device says, into a session of its board. The first line of an input is the name of the board; each other line
// is one of the device or, behind "> ", an action of the user:
//   > payload TEXT, > ack, > profile 0|1|2, > start, > stop, > wait SECONDS,
//   > next pass, > get config|identity, > upload, > custom LINE
// The device says a line a millisecond, also while a request waits, so the lines behind an action that asks the device
// are the answer. Before an action it says nothing, and time passes.

#include "FuzzTarget.h"
#include "PayloadModel.h"
#include "SerialPortManager.h"
#include "ZepManager.h"

#include <QCoreApplication>
#include <QTimer>

#include <array>
#include <chrono>

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds step{1};         // of time, while the device says nothing
constexpr std::chrono::seconds resultAfter{55}; // of a Tx, at the latest
constexpr int longestWait = 86400;              // s
constexpr int pressesMax = 3;                   // of the wake-up button; then the user cancels

ZepBoard::Module boardOf(const QByteArray &name)
{
    constexpr std::array boards{ZepBoard::ZEP1, ZepBoard::ZEP2, ZepBoard::TBX, ZepBoard::RANGER};
    const int known = QMetaEnum::fromType<ZepBoard::Module>().keyToValue(name.trimmed().constData());
    return known > ZepBoard::NA ? static_cast<ZepBoard::Module>(known)
                                : boards.at(static_cast<std::size_t>(name.size()) % boards.size());
}

/// Cannot be opened, which leaves a session that nothing is written for.
class NoPort : public SerialPortManager
{
public:
    bool open(const QString &) override { return false; }
    void write(const QByteArray &) override {}
};

class Script : public QObject
{
public:
    explicit Script(const QByteArray &input) : m_lines(input.split('\n'))
    {
        connect(&m_manager, &ZepManager::userActionRequested, this, &Script::pressButton, Qt::QueuedConnection);
        m_tick.setSingleShot(true); // started again before a line is said, for the waits inside
        m_tick.setTimerType(Qt::PreciseTimer);
        connect(&m_tick, &QTimer::timeout, this, &Script::onTick);
        m_manager.connect(boardOf(m_lines.takeFirst()), {}, u"Default"_s);
        listen();
    }

    void play()
    {
        while (!m_lines.isEmpty()) {
            if (isAction()) {
                const QByteArray action = m_lines.takeFirst().mid(2).trimmed();
                listen();
                act(action);
            } else {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            }
        }
        Fuzz::readAll(&m_manager);
        m_manager.disconnect();
        Fuzz::require(!m_tx->sequenceRunning() && !m_tx->ackPending(), "a session has left a sequence behind");
        Fuzz::readAll(&m_manager);
    }

private:
    [[nodiscard]] bool isAction() const { return m_lines.first().startsWith("> "); }

    void say(const QByteArray &line) { Q_EMIT m_port->doneReading(QString::fromUtf8(line.trimmed())); }

    /// The device may say its next line a millisecond from now.
    void listen() { m_tick.start(1); }

    /// To be called before \a duration passes. The program ends by design when a Tx is accepted while the result of
    /// another one is pending, so the result comes before the next Tx is due.
    void sayPendingResult(std::chrono::seconds duration)
    {
        const bool isPending =
            m_tx->ackPending() && m_tx->sequenceRunning() && m_tx->selectedProfile() != TxManager::PREPASS_ON_MODULE;
        m_pendingFor = isPending ? m_pendingFor + duration : std::chrono::seconds{0};
        if (m_pendingFor > resultAfter) {
            m_pendingFor = {};
            say("+TX=0,");
        }
    }

    void onTick()
    {
        if (m_lines.isEmpty() || isAction()) {
            m_tick.start(step);
            sayPendingResult(step);
        } else {
            const QByteArray line = m_lines.takeFirst();
            listen();
            say(line);
        }
    }

    void pressButton()
    {
        if (++m_presses > pressesMax) {
            m_manager.cancelModuleRequest();
        } else {
            say("RANGER -- BUTTON PUSHED");
        }
    }

    void act(const QByteArray &action)
    {
        const QByteArray word = action.split(' ').first();
        const QByteArray rest = action.mid(word.size() + 1);
        const bool idle = !m_tx->sequenceRunning() && !m_tx->ackPending(); // the views offer no more otherwise
        m_presses = 0;
        if (word == "wait") {
            const std::chrono::seconds duration(qBound(0, rest.toInt(), longestWait));
            sayPendingResult(duration);
            Fuzz::time().sleep(duration);
            listen(); // the next line may answer what the program asks now
            QCoreApplication::processEvents();
        } else if (word == "stop") {
            m_tx->stop();
        } else if (idle) {
            actIdle(word, rest);
        }
    }

    void actIdle(const QByteArray &word, const QByteArray &rest)
    {
        PayloadModel *payloads = m_tx->payloadListModel();
        if (word == "payload") {
            m_tx->addPayloadItem(QString::fromUtf8(rest));
        } else if (word == "ack") {
            payloads->setData(payloads->index(0), true, PayloadModel::OptionAckRole);
        } else if (word == "profile") {
            m_tx->setSelectedProfile(static_cast<TxManager::Profile>(qBound(0, rest.toInt(), 2)));
        } else if (word == "start") {
            if (payloads->rowCount() > 0) {
                m_tx->start(2);
            }
        } else if (word == "next") {
            m_manager.getSatelliteNextPass();
        } else if (word == "get") {
            rest == "config" ? m_manager.getConfig() : m_manager.getHwInfo();
        } else if (word == "upload") {
            m_manager.uploadConfig();
        } else if (word == "custom") {
            m_manager.requestCustomCmd(QString::fromUtf8(rest));
        }
    }

    QList<QByteArray> m_lines;
    NoPort *m_port = new NoPort;
    ZepManager m_manager{nullptr, m_port};
    TxManager *m_tx = m_manager.tx();
    std::chrono::seconds m_pendingFor{0};
    int m_presses = 0;
    QTimer m_tick;
};

} // namespace

void fuzzOne(const QByteArray &input)
{
    Script(input).play();
}
