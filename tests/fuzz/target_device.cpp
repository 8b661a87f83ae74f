// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// What a device says, into a session of its board. The first line of an input is the name of the board; each other line
// is one of the device or, behind "> ", a deed of the user:
//   > payload TEXT, > ack, > profile 0|1|2, > start, > stop, > wait SECONDS,
//   > next pass, > get config|identity, > upload, > custom LINE
// A line reaches the program in a turn of the event loop of its own, whoever spins it; so the lines behind a deed that
// asks the device answer it. When the next line is a deed, the device is silent and the clock runs.

#include "FuzzTarget.h"
#include "PayloadModel.h"
#include "VirtualClock.h"
#include "ZepManager.h"

#include <QCoreApplication>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int silence = 1000;      // ms of a turn in which nothing is said
constexpr int longestOwed = 55;    // seconds that a device may owe the answer to a Tx
constexpr int longestWait = 86400; // s
constexpr int presses = 3;         // of the wake-up button; then the user has enough

ZepBoard::Module boardOf(const QByteArray &name)
{
    constexpr std::array boards{ZepBoard::ZEP1, ZepBoard::ZEP2, ZepBoard::TBX, ZepBoard::RANGER};
    const int known = QMetaEnum::fromType<ZepBoard::Module>().keyToValue(name.trimmed().constData());
    return known > ZepBoard::NA ? static_cast<ZepBoard::Module>(known)
                                : boards.at(static_cast<std::size_t>(name.size()) % boards.size());
}

class Script : public QObject
{
public:
    explicit Script(const QByteArray &input) : m_lines(input.split('\n')), m_module(boardOf(m_lines.takeFirst()))
    {
        connect(&m_manager, &ZepManager::userActionRequested, this, &Script::pressButton, Qt::QueuedConnection);
        m_manager.connect(m_module, u"no-such-port"_s, u"Default"_s); // leaves a session without a wire
    }

    void play()
    {
        while (!m_lines.isEmpty()) {
            if (isDeed()) {
                act(m_lines.takeFirst().mid(2).trimmed());
            } else {
                QCoreApplication::processEvents();
            }
        }
        Fuzz::readAll(&m_manager);
        m_manager.disconnect();
        Fuzz::require(!m_tx->sequenceRunning() && !m_tx->ackPending(), "a session has left a sequence behind");
        Fuzz::readAll(&m_manager);
    }

private:
    [[nodiscard]] bool isDeed() const { return m_lines.first().startsWith("> "); }
    /// Whether a stop empties the queue of the device. A malformed payload behind the first one would end the program
    /// there, which is known: no input may get so far.
    [[nodiscard]] bool hasQueue() const { return m_module == ZepBoard::ZEP2 || m_module == ZepBoard::TBX; }

    void say(const QByteArray &line)
    {
        if (hasQueue() && m_tx->sequenceRunning() && line.contains("RCONF")) {
            return;
        }
        QMetaObject::invokeMethod(&m_manager, "onSerialRead", Q_ARG(QString, QString::fromUtf8(line.trimmed())));
    }

    void pass(int milliseconds)
    {
        // An answer that is out when the next Tx is due ends the program, which is known as well.
        const bool owes =
            m_tx->ackPending() && m_tx->sequenceRunning() && m_tx->selectedProfile() != TxManager::PREPASS_ON_MODULE;
        m_owed = owes ? m_owed + milliseconds / silence : 0;
        if (m_owed > longestOwed) {
            m_owed = 0;
            say("+TX=0,");
        }
        VirtualClock::advance(milliseconds);
    }

    void onTurn()
    {
        if (std::exchange(m_listening, false)) {
            return;
        }
        if (m_lines.isEmpty() || isDeed()) {
            pass(silence);
        } else {
            say(m_lines.takeFirst());
        }
    }

    void pressButton()
    {
        if (++m_pressed > presses) {
            m_manager.cancelModuleRequest();
        } else {
            say("RANGER -- BUTTON PUSHED");
        }
    }

    void act(const QByteArray &deed)
    {
        const QByteArray word = deed.split(' ').first();
        const QByteArray rest = deed.mid(word.size() + 1);
        const bool idle = !m_tx->sequenceRunning() && !m_tx->ackPending(); // else the views are locked
        m_pressed = 0;
        if (word == "wait") {
            pass(qBound(0, rest.toInt(), longestWait) * silence);
            m_listening = true; // the next line may answer what the program asks now
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
            bool startable = payloads->rowCount() > 0;
            for (int row = 0; row < payloads->rowCount(); ++row) {
                startable &= !hasQueue() || payloads->getStatus(static_cast<uchar>(row)) != Payload::ERROR;
            }
            if (startable) {
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
    ZepBoard::Module m_module;
    ZepManager m_manager{nullptr};
    TxManager *m_tx = m_manager.tx();
    int m_owed = 0; // s
    bool m_listening = false;
    int m_pressed = 0;
    Fuzz::Pump m_pump{[this] { onTurn(); }};
};

} // namespace

void fuzzOne(const QByteArray &input)
{
    Script(input).play();
}
