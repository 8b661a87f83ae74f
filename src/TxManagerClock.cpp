// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TxManager.h"

#include <QTimer>

#include "Logger.h"
#include "PrepassModel.h"

namespace {

constexpr qint64 c_offsetTolerance = 1;      // s
constexpr qint64 c_scheduleTolerance = 1000; // ms
constexpr qint64 c_second = 1000;            // ms

} // namespace

QString TxManager::utcTime() const
{
    return m_utcTime.toString(QStringLiteral("ddd MMM d, hh:mm:ss"));
}

QDateTime TxManager::currentUtc() const
{
    return Clock::current()->utcNow().addSecs(m_utcOffsetSeconds);
}

void TxManager::refreshUtcTime()
{
    m_utcTime = currentUtc();
    Q_EMIT utcTimeChanged();
}

void TxManager::onUtcTimeRefreshOver()
{
    refreshUtcTime();
    if (m_selectedProfile != PREPASS_ON_MODULE) {
        walkPasses();
    }
    followClock();
}

void TxManager::followClock()
{
    // The timer counts milliseconds and knows nothing of a step of the clock, nor of the time that the computer slept.
    const qint64 left = m_utcTime.msecsTo(m_scheduleDue);
    const qint64 late = m_scheduleTimer->isActive() ? m_scheduleTimer->remainingTime() - left : 0;
    if (qAbs(late) <= c_scheduleTolerance) {
        return;
    }
    switch (m_selectedProfile) {
    case PERIODIC:
        // It keeps intervals, not times of day: no step makes one longer. Time that has passed is not waited for
        // again, but the next Tx never overtakes the answer to the one before.
        if (late > 0 && !m_ackPending) {
            armSchedule(left);
        }
        return;
    case PREPASS:
        // Whatever the table has next now. The walk takes one pass a second, and must have caught up.
        if (!hasNextPass() || m_prepassListModel->getStartUtc(m_nextPassIdx) >= m_utcTime) {
            m_scheduleTimer->stop();
            // From the event loop: it may make a request, and the clock must not stop for it.
            QMetaObject::invokeMethod(
                this,
                [this, run = m_run] {
                    if (isRunning(run)) {
                        schedulePrepassTx();
                    }
                },
                Qt::QueuedConnection);
        }
        return;
    case PREPASS_ON_MODULE:
        waitForBoundary(); // not until what is due, which can be a pause between two requests and no time of day
        return;
    }
}

void TxManager::setCustomUtcTime(const QString &customIsoDate)
{
    const QDateTime customTime = QDateTime::fromString(customIsoDate, Qt::ISODate);
    // The date is usually the time shown here, up to a second old and cut to the second, so the distance comes out as
    // up to 2 s less than the offset in force. Rounded up it stays within the tolerance, for either sign.
    const qint64 distance = Clock::current()->utcNow().msecsTo(customTime);
    applyUtcOffset(distance > 0 ? (distance + c_second - 1) / c_second : distance / c_second, true);
}

void TxManager::applyUtcOffset(qint64 seconds, bool reload)
{
    if (m_utcOffsetSeconds >= seconds - c_offsetTolerance && m_utcOffsetSeconds <= seconds + c_offsetTolerance) {
        Q_EMIT loadPrepassDataCompleted(QString());
        return;
    }
    m_utcOffsetSeconds = seconds;
    m_logger->setUtcOffset(seconds);
    refreshUtcTime();
    log(QStringLiteral("UTC time ") + (seconds == 0 ? QStringLiteral("restored") : QStringLiteral("updated")) +
        QStringLiteral(" (") + utcTime() + QLatin1Char(')'));
    if (reload) {
        reloadPrepassData(); // which passes are over depends on the clock
    }
}
