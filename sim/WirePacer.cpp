// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "WirePacer.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int splitPauseMs = 50;
constexpr qint64 byteNs = 10 * 1'000'000'000LL / 9600; // start bit, eight data bits, stop bit

} // namespace

WirePacer::WirePacer(bool baudPace, QObject *parent) : QObject(parent), m_baudPace(baudPace)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &WirePacer::pump);
    m_clock.start();
}

void WirePacer::send(const QByteArray &line, std::function<void()> sent)
{
    m_pieces.push_back({line, 0, std::move(sent)});
    if (!m_timer.isActive()) {
        pump();
    }
}

void WirePacer::sendSplit(const QByteArray &line, std::function<void()> sent)
{
    const auto half = line.size() / 2;
    m_pieces.push_back({line.left(half), 0, {}});
    m_pieces.push_back({line.mid(half), splitPauseMs, std::move(sent)});
    if (!m_timer.isActive()) {
        pump();
    }
}

void WirePacer::clear()
{
    m_timer.stop();
    m_pieces.clear();
}

void WirePacer::pump()
{
    while (!m_pieces.empty()) {
        Piece &piece = m_pieces.front();
        if (piece.pauseMs > 0) {
            m_idle = true;
            m_timer.start(std::exchange(piece.pauseMs, 0));
            return;
        }
        const QByteArray bytes = piece.bytes.left(bytesDue(piece.bytes.size()));
        piece.bytes.remove(0, bytes.size());
        if (!bytes.isEmpty()) {
            Q_EMIT leaving(bytes);
        }
        if (m_pieces.empty()) {
            return;
        }
        if (!piece.bytes.isEmpty()) {
            m_timer.start(1);
            return;
        }
        const auto sent = std::move(piece.sent);
        m_pieces.pop_front();
        if (sent) {
            sent();
        }
    }
    m_idle = true;
}

qsizetype WirePacer::bytesDue(qsizetype waiting)
{
    if (!m_baudPace) {
        return waiting;
    }
    const qint64 now = m_clock.nsecsElapsed();
    if (std::exchange(m_idle, false)) {
        m_lastByteNs = std::max(m_lastByteNs, now);
    }
    const qint64 count = std::min<qint64>((now - m_lastByteNs) / byteNs, waiting);
    m_lastByteNs += count * byteNs;
    return qsizetype(count);
}
