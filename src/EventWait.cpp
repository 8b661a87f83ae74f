// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EventWait.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

namespace {

/// Knows when the input that was held back has been delivered. A timer of interval 0 fires once in each turn of the
/// event loop, in some event loops before the input of that turn: the second firing is behind it in all of them.
class InputHold : public QTimer
{
public:
    explicit InputHold(QObject *parent) : QTimer(parent)
    {
        setInterval(0);
        callOnTimeout(this, [this] {
            if (m_depth > 0 || --m_turnsLeft <= 0) {
                stop(); // a wait that has begun meanwhile starts it again at its end
            }
        });
    }

    void begin() { ++m_depth; }

    void end()
    {
        if (--m_depth == 0) {
            m_turnsLeft = turnsOfDelivery;
            start();
            // Some dispatchers look for input only when they are woken, which the input itself has done in the wait.
            QAbstractEventDispatcher::instance()->wakeUp();
        }
    }

    [[nodiscard]] bool isHeld() const { return m_depth > 0 || isActive(); }

private:
    static constexpr int turnsOfDelivery = 2;

    int m_depth = 0; ///< waits can be nested
    int m_turnsLeft = 0;
};

QPointer<InputHold> hold; // dies with the application; clazy:exclude=non-pod-global-static

} // namespace

void EventWait::until(const std::function<bool()> &isOver)
{
    if (isOver()) {
        return; // nothing was held back
    }
    if (!hold) {
        hold = new InputHold(QCoreApplication::instance());
    }
    hold->begin();
    do {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
    } while (!isOver());
    hold->end();
}

void EventWait::until(const std::function<bool()> &isOver, std::chrono::milliseconds limit)
{
    QTimer timer;
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    timer.start(limit);
    until([&] { return !timer.isActive() || isOver(); });
}

bool EventWait::isInputHeld()
{
    return hold && hold->isHeld();
}
