// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Command.h"
#include "SimFifo.h"

#include <QObject>
#include <QTimer>

class SimPrediction;
class SimRadio;
class SimSettings;

/// Sends messages: at once, or from the queue when a pass or ATXSTART comes. One is in the air at a time, and its
/// result line follows when the last repetition is over. What waits when a pass begins goes out in that pass; a
/// message that is queued while one is running waits for the next.
class SimTransmitter : public QObject
{
    Q_OBJECT

public:
    SimTransmitter(const SimRadio &radio, const SimSettings &settings, const SimPrediction &prediction, int airtimeMs,
                   QObject *parent = nullptr);

    [[nodiscard]] std::vector<Command> commands();
    /// What a restart does: nothing is in the air or in the queue any more.
    void reset();

    /// The next result has this status instead of 0.
    void setNextStatus(int status) { m_nextStatus = status; }
    /// Queues a satellite's message, in hexadecimal, behind the result of the next good message with an attribute.
    void queueReply(const QString &hex) { m_replies += hex; }
    /// Nothing that waits goes out in the next pass that begins.
    void skipPass() { m_skipsPass = true; }

Q_SIGNALS:
    /// A line that no request asked for.
    void spoke(const QString &line);

private:
    enum class Source { Direct, Queue, Silent };

    Answer transmit(const QStringList &params, Source source);
    Answer enqueue(const QStringList &params);
    Answer listQueue() const;
    Answer startQueue();
    ErrorCode readMessage(const QStringList &params, SimFifo::Message &message) const;
    void takeOff(const SimFifo::Message &message, Source source);
    void beginAirtime();
    void land();
    void startWatching();
    void watchPasses();

    const SimRadio &m_radio;
    const SimSettings &m_settings;
    const SimPrediction &m_prediction;
    const int m_airtimeMs;
    SimFifo m_fifo;
    std::optional<SimFifo::Message> m_inAir;
    Source m_inAirSource = Source::Direct;
    QTimer m_airTimer;
    QTimer m_passTimer;
    QDateTime m_passBegun; ///< start of the pass that is running; invalid outside of passes
    bool m_skipsPass = false;
    int m_nextStatus = 0;
    QStringList m_replies;
};
