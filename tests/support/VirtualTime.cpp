// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "VirtualTime.h"

#include <QCoreApplication>
#include <QTimerEvent>

#include <algorithm>
#include <tuple>
#include <utility>

namespace {
constexpr qint64 longestPreciseInterval = 20; // ms; Qt counts a coarse timer up to this precisely
constexpr qint64 coarseShare = 20;            // of its interval, that a coarse timer may be late
} // namespace

VirtualTime *VirtualTime::install()
{
    auto *time = new VirtualTime;
    QCoreApplication::setEventDispatcher(time);
    Clock::install(time);
    return time;
}

QDateTime VirtualTime::utcNow() const
{
    return QDateTime::fromMSecsSinceEpoch(m_dateOfStart + m_now, Qt::UTC);
}

bool VirtualTime::processEvents(QEventLoop::ProcessEventsFlags flags)
{
    Q_EMIT awake();
    bool found = std::exchange(m_isAwake, false);
    QCoreApplication::sendPostedEvents();
    found |= expireTimers();
    if (!found && !m_isAwake && flags.testFlag(QEventLoop::WaitForMoreEvents)) {
        Q_EMIT aboutToBlock();
        const auto next = nextTimer();
        if (next == m_timers.end()) {
            qFatal("nothing to wait for");
        }
        m_now = std::max(m_now, next->second.deadline);
        found = expireTimers();
    }
    return found;
}

VirtualTime::Timers::iterator VirtualTime::nextTimer()
{
    const auto next = std::min_element(m_timers.begin(), m_timers.end(), [](const auto &left, const auto &right) {
        const auto order = [](const Timer &timer) { return std::tuple(timer.isExpiring, timer.deadline, timer.turn); };
        return order(left.second) < order(right.second);
    });
    return next != m_timers.end() && next->second.isExpiring ? m_timers.end() : next;
}

bool VirtualTime::expireTimers()
{
    // A timer that is set meanwhile waits for the next call: posted events come in between.
    const quint64 lastTurn = m_turns;
    bool found = false;
    for (auto next = nextTimer(); next != m_timers.end(); next = nextTimer()) {
        const int id = next->first;
        Timer &timer = next->second;
        if (timer.deadline > m_now || timer.turn > lastTurn) {
            break;
        }
        found = true;
        timer.deadline += timer.interval;
        if (timer.deadline < m_now) {
            timer.deadline = m_now + timer.interval; // expiries that were missed are lost
        }
        timer.turn = ++m_turns;
        timer.isExpiring = true;
        QTimerEvent event(id);
        QCoreApplication::sendEvent(timer.object, &event);
        if (const auto same = m_timers.find(id); same != m_timers.end()) {
            same->second.isExpiring = false;
        }
    }
    return found;
}

void VirtualTime::registerTimer(int timerId, qint64 interval, Qt::TimerType timerType, QObject *object)
{
    const bool isCoarse = timerType != Qt::PreciseTimer && interval > longestPreciseInterval;
    const qint64 deadline = m_now + interval + (isCoarse ? interval / coarseShare : 0);
    m_timers[timerId] = {interval, object, deadline, ++m_turns};
}

bool VirtualTime::unregisterTimers(QObject *object)
{
    return std::erase_if(m_timers, [object](const auto &entry) { return entry.second.object == object; }) > 0;
}

int VirtualTime::remainingTime(int timerId)
{
    const auto entry = m_timers.find(timerId);
    return entry == m_timers.end() ? -1 : static_cast<int>(std::max(entry->second.deadline - m_now, qint64{0}));
}
