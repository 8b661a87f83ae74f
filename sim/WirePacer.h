// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>

/// The order and the pace in which bytes leave for the client: piece after piece, at once or as 9600 baud sends them.
class WirePacer : public QObject
{
    Q_OBJECT

public:
    explicit WirePacer(bool baudPace, QObject *parent = nullptr);

    /// Queues one line, its end included. \a sent is called once the last byte has been handed over.
    void send(const QByteArray &line, std::function<void()> sent = {});
    /// As send(), in two pieces with a pause between them that is long enough for two reads.
    void sendSplit(const QByteArray &line, std::function<void()> sent = {});
    /// Forgets what has not left.
    void clear();

Q_SIGNALS:
    void leaving(const QByteArray &bytes);

private:
    struct Piece
    {
        QByteArray bytes;
        int pauseMs = 0; ///< before the first byte
        std::function<void()> sent;
    };

    void pump();
    [[nodiscard]] qsizetype bytesDue(qsizetype waiting);

    const bool m_baudPace;
    std::deque<Piece> m_pieces;
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_lastByteNs = 0; ///< when the last byte left, by m_clock
    bool m_idle = true;      ///< no byte is on the line: the next one begins when it is due
};
