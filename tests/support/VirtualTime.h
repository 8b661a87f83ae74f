// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Clock.h"

#include <QAbstractEventDispatcher>

#include <map>

/// An event loop without real time, and the clock of the program to go with it. A loop that has nothing to do and may
/// wait jumps to the next timer, so hours pass in a moment and in the same way in each run.
///
/// A precise timer expires to the millisecond. A coarse one above 20 ms first expires five percent late, which shows
/// whether a time-out is exact.
///
/// For one thread, without sockets and without a window.
class VirtualTime : public QAbstractEventDispatcher, public Clock
{
public:
    /// To be called before the application object exists, which becomes the owner.
    static VirtualTime *install();
    ~VirtualTime() override { Clock::install(nullptr); }

    /// Milliseconds since install(); what timers count.
    [[nodiscard]] qint64 now() const { return m_now; }
    /// Moves the date but no timer, as a time server does, or a computer that was suspended.
    void setDate(const QDateTime &utc) { m_dateOfStart = utc.toMSecsSinceEpoch() - m_now; }

    // Clock
    [[nodiscard]] QDateTime utcNow() const override;
    void sleep(std::chrono::milliseconds duration) override { m_now += duration.count(); }

    // QAbstractEventDispatcher
    bool processEvents(QEventLoop::ProcessEventsFlags flags) override;
    void registerTimer(int timerId, qint64 interval, Qt::TimerType timerType, QObject *object) override;
    bool unregisterTimer(int timerId) override { return m_timers.erase(timerId) > 0; }
    bool unregisterTimers(QObject *object) override;
    /// -1 for a timer that does not exist.
    int remainingTime(int timerId) override;
    void wakeUp() override { m_isAwake = true; }
    void interrupt() override { m_isAwake = true; }

private:
    struct Timer
    {
        qint64 interval = 0;
        QObject *object = nullptr;
        qint64 deadline = 0;
        quint64 turn = 0;        ///< of two with the same deadline the one that was set first expires first
        bool isExpiring = false; ///< its event is being handled; it does not expire again meanwhile
    };
    using Timers = std::map<int, Timer>;

    /// The end if no timer can expire.
    [[nodiscard]] Timers::iterator nextTimer();
    bool expireTimers();

    // QAbstractEventDispatcher; what nothing needs here
    void registerSocketNotifier(QSocketNotifier *) override { qFatal("no sockets in virtual time"); }
    void unregisterSocketNotifier(QSocketNotifier *) override {}
    [[nodiscard]] QList<TimerInfo> registeredTimers(QObject *) const override { return {}; }

    Timers m_timers;
    quint64 m_turns = 0;
    qint64 m_now = 0;
    qint64 m_dateOfStart = 0; // ms since the Unix epoch
    bool m_isAwake = false;
};
