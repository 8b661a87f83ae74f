// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "SerialPortManager.h"
#include "TxManager.h"
#include "VirtualTime.h"
#include "ZepBoard.h"

#include <QRandomGenerator>
#include <QStringList>
#include <QTimer>

#include <functional>

/// A board in virtual time behind a port that does not exist. It answers in the grammar of its board and transmits what
/// it is given. Random numbers decide which of its lines are late, lost, garbled or doubled, and what else goes wrong.
///
/// It refuses a Tx while the program awaits the result of another one that was lost: the program ends by design when
/// that is accepted.
class VirtualDevice : public SerialPortManager
{
public:
    /// \a predicts is the answer to PREPASS_EN.
    VirtualDevice(ZepBoard::Module module, bool predicts, VirtualTime *time, QRandomGenerator *random)
        : m_module(module), m_predicts(predicts), m_time(time), m_random(random)
    {
        setDate(time->utcNow());
        transmitQueue();
    }

    bool open(const QString &) override
    {
        m_isOpen = true;
        m_isLineLost = false;
        m_isAwake = m_module != ZepBoard::RANGER;
        return true;
    }

    void close() override
    {
        ++m_epoch;
        m_incoming.clear();
        m_isOpen = m_isLineLost = false;
    }

    [[nodiscard]] bool isOpen() const override { return m_isOpen; }
    [[nodiscard]] bool isLineLost() const override { return m_isLineLost; }

    void write(const QByteArray &data) override
    {
        const QString request = QString::fromLatin1(data).trimmed();
        onRequest(request);
        const QString word = request.section(u'+', 1).section(u'=', 0, 0);
        const bool isLost = m_isAnswerOut && tx->ackPending();
        m_isAnswerOut = m_isAnswerOut || word == "TX";
        if (word == "TX" && isLost) {
            m_incoming.prepend(error(21)); // before any line that the program would take for an acceptance
            QMetaObject::invokeMethod(this, &VirtualDevice::deliver, Qt::QueuedConnection);
        } else if (draw(300) == 0) {
            QTimer::singleShot(draw(1000), Qt::PreciseTimer, this, &VirtualDevice::unplug); // instead of an answer
        } else if (m_isAwake) {
            sayWithFaults(answerTo(word, request.section(u'=', 1)), 5 + draw(200));
        }
    }

    /// Does something that no request asked for.
    void misbehave()
    {
        const QStringList bursts[] = {{"+RX=00112233"},
                                      {"+BC=0F", "+RX=AA", "", "no command at all"},
                                      {"+", "+=,", "+NOSUCH=1"},
                                      {error(draw(50)), "+TX=0,00AA11BB"},
                                      {"+PREPASS_EN=" + QString::number(draw(3))},
                                      {m_module == ZepBoard::RANGER ? "RANGER -- SLEEP" : "+SATDET=1"},
                                      {"+ASSERT=main.c:42", "+RX=01"}};
        const int kind = draw(std::ssize(bursts) + 1);
        if (kind < std::ssize(bursts) && m_isAwake) {
            say(bursts[kind]);
        } else if (kind == std::ssize(bursts)) {
            unplug();
        }
    }

    void pushButton()
    {
        if (m_isOpen) {
            m_isAwake = true;
            m_incoming << "RANGER -- BUTTON PUSHED";
            deliver();
        }
    }

    /// The clock of the device.
    [[nodiscard]] QDateTime date() const
    {
        return QDateTime::fromMSecsSinceEpoch(m_dateOfStart + m_time->now(), Qt::UTC);
    }
    void setDate(const QDateTime &date) { m_dateOfStart = date.toMSecsSinceEpoch() - m_time->now(); }

    const TxManager *tx = nullptr; ///< to be set before a session begins
    std::function<void(const QString &)> onRequest;
    std::function<void(const QString &)> onLine; ///< a line of the device is about to be delivered
    qint64 lostAt = -1;                          ///< virtual time at which the line was last lost

private:
    static constexpr qint64 passInterval = 1800000; // ms between the beginnings of two passes
    static constexpr qint64 passDuration = 480000;  // ms
    static constexpr qsizetype queueLengthMax = 4;

    static QString error(int code) { return "+ERROR=" + QString::number(code); }
    static QString text(const QDateTime &date) { return date.toString("yyyy-M-dTH:m:sZ"); }
    [[nodiscard]] int draw(qsizetype count) { return m_random->bounded(static_cast<int>(count)); }

    void sayWithFaults(const QString &line, int delay)
    {
        const QStringList faults[] = {{}, // lost
                                      {line, line},
                                      {line, "+TX=0,00AA11BB"},
                                      {"+BC=11", line},
                                      {line, "+ASSERT=main.c:43"},
                                      {error(40)},
                                      {QString(line).replace(draw(line.size()), 1 + draw(3), u'#')},
                                      {line.mid(draw(3), draw(line.size()))}};
        const int kind = draw(100);
        const bool isLate = kind < std::ssize(faults) + 3;
        kind < std::ssize(faults) ? say(faults[kind], delay) : say({line}, delay + (isLate ? draw(20000) : 0));
    }

    QString answerTo(const QString &word, const QString &data)
    {
        static const QStringList values =
            QString("ID=00aabb FW=1,SW1.4.0 SN=ZEP12345678901 ADDR=1f2e RCONF=399900000,401600000,27,HRA2 "
                    "ATXFRQ=401650000 PWR=1000 POS=43.5,1.5 ZEP_REDUN=4 LORA_EN=1 LORA_REDUN=1 LORA_ACK=0 PACQ=60 "
                    "PACQ_SENS=1,1,1,1,1,1,1 ALRT_SENS=1,1,1,1,1,1,1 ALRT_LIGHT=1,400,3000 ALRT_ACC=1,4000 "
                    "AOP=a,2026-1-7T0:0:0Z,7195.5,98.5,10.1,-25.3,100.9,-0.2 ALRT_DRYC=1,1 ALRT_PB=0 "
                    "PREPASS_CFG=43.5,1.5,2026-1-7T0:0:0Z,2026-1-9T0:0:0Z,5.0,90.0,2,9,5.0,30")
                .split(u' ');
        if (word == "NEXTPASS") {
            const bool isPredicted = draw(8) > 0 && date().time().hour() % 4 > 0;
            const qint64 now = date().toMSecsSinceEpoch();
            const QDateTime start = QDateTime::fromMSecsSinceEpoch(now - now % passInterval + passInterval, Qt::UTC);
            const QString end = text(start.addMSecs(passDuration)) + u',' + QString::number(passDuration / 1000);
            return isPredicted ? "+NEXTPASS=a," + text(start) + u',' + end + ",45" : error(5);
        }
        const QString payload = data.section(u',', 0, 0);
        if (word == "TX") {
            if (m_time->now() < m_busyUntil || draw(15) == 0) {
                return error(21);
            }
            const int airtime = 1000 + draw(draw(25) == 0 ? 90000 : 9000);
            m_busyUntil = m_time->now() + airtime;
            sayResult(payload, airtime);
        } else if (word == "TXDATA") {
            if (m_queue.size() == queueLengthMax || draw(8) == 0) {
                return error(21);
            }
            m_queue.append(payload);
        } else if (word == "TXFIFO") {
            m_queue.clear();
        } else if (word == "RST") {
            say({"RANGER -- SLEEP", "RANGER -- PARAMETERS RESTORED"}, 3000);
        } else if (word == "UDATE" && data != "?") {
            setDate(QDateTime::fromString(data, Qt::ISODate));
        } else if (word == "UDATE") {
            return "+UDATE=" + text(date());
        } else if (word == "PREPASS_EN" && data == "?") {
            return "+PREPASS_EN=" + QString::number(m_predicts ? 1 : 0);
        } else if (data == "?") {
            for (const QString &value : values) {
                if (value.startsWith(word + u'=')) {
                    return u'+' + value;
                }
            }
        }
        return "+OK";
    }

    void sayResult(const QString &data, int delay)
    {
        sayWithFaults((draw(15) == 0 ? "+TX=5," : "+TX=0,") + data, delay);
    }

    void unplug()
    {
        if (m_isOpen) {
            close();
            restart();
            m_isLineLost = true;
            lostAt = m_time->now();
            Q_EMIT serialError("The evaluation kit is not reachable, it may have been unplugged");
        }
    }

    /// In a pass, about every third minute.
    void transmitQueue()
    {
        if (date().toMSecsSinceEpoch() % passInterval < passDuration && !m_queue.isEmpty() && draw(3) == 0) {
            sayResult(m_queue.takeFirst(), 0);
        }
        QTimer::singleShot(60000, Qt::PreciseTimer, this, &VirtualDevice::transmitQueue);
    }

    void restart()
    {
        ++m_epoch;
        m_busyUntil = 0;
        m_queue.clear();
    }

    /// In one piece.
    void say(const QStringList &lines, int delay = 0)
    {
        QTimer::singleShot(delay, Qt::PreciseTimer, this, [this, lines, epoch = m_epoch] {
            if (m_isOpen && epoch == m_epoch) {
                m_incoming += lines;
                deliver();
            }
        });
    }

    /// As a port does: while the handler of a line waits, the lines behind it are read when more arrives.
    void deliver()
    {
        while (!m_incoming.isEmpty()) {
            const QString line = m_incoming.takeFirst();
            m_isAwake = m_isAwake && line != "RANGER -- SLEEP";
            if (line.startsWith("+ASSERT")) {
                restart();
            }
            if (line.startsWith("+TX=") || (line.startsWith("+ERROR") && !tx->ackPending())) {
                m_isAnswerOut = false;
            }
            onLine(line);
            Q_EMIT doneReading(line);
        }
    }

    ZepBoard::Module m_module;
    bool m_predicts;
    VirtualTime *m_time;
    QRandomGenerator *m_random;
    qint64 m_dateOfStart = 0;   // ms since the Unix epoch, when virtual time was 0
    qint64 m_busyUntil = 0;     // with a Tx
    QStringList m_incoming;     // said, and not delivered yet
    QStringList m_queue;        // for the next pass
    bool m_isAnswerOut = false; // of the last Tx: its result, or an error
    int m_epoch = 0;            // of answers under way, which a restart and a lost line end
    bool m_isOpen = false;
    bool m_isLineLost = false;
    bool m_isAwake = true;
};
