// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TxManager.h"

#include <QTimer>

#include "Assertion.h"
#include "PayloadModel.h"
#include "PrepassModel.h"

namespace {

constexpr auto c_source = "src/TxManager";
constexpr int c_countdownInterval = 1000; // ms
constexpr int c_msPerSecond = 1000;
constexpr int c_moduleDelay = 10; // ms

} // namespace

void TxManager::setAckPending(bool pending)
{
    ZEPGUI_ASSERT(m_ackPending != pending, "m_ackPending updated with a redundant state", c_source);
    m_ackPending = pending;
    Q_EMIT ackPendingChanged();
}

void TxManager::settleAck()
{
    if (m_ackPending) {
        setAckPending(false);
    }
}

void TxManager::setSequenceRunning(bool running)
{
    ZEPGUI_ASSERT(m_sequenceRunning != running, "m_sequenceRunning updated with a redundant state", c_source);
    m_sequenceRunning = running;
    Q_EMIT sequenceRunningChanged();
}

void TxManager::start(uchar repeatNum)
{
    if (m_selectedProfile == PREPASS && m_prepassListModel->rowCount() == 0) {
        Q_EMIT txErrorOccured(QStringLiteral("Error: No prepass data imported.\nPlease import data as a CSV file "
                                             "retrieved from HelioWeb."));
        return;
    }
    applyReportedProfile();
    m_lineLost = false;
    setSequenceRunning(true);
    const quint64 run = ++m_run;
    m_repeatNum = repeatNum;
    log(QStringLiteral("--- Tx SEQUENCE START (x") + QString::number(repeatNum) + QStringLiteral(") ---"));
    if (!checkPayloadBeforeTx(m_currentIndex)) {
        return;
    }
    if (m_selectedProfile == PREPASS_ON_MODULE) {
        prepareModule();
        if (!isRunning(run)) {
            return; // stopped inside the request, and perhaps started again: that start has armed what follows
        }
    }
    scheduleNextTx();
    m_countdownTimer->start(c_countdownInterval);
}

void TxManager::stop()
{
    if (!m_sequenceRunning) {
        return;
    }
    m_countdownTimer->stop();
    m_scheduleTimer->stop();
    m_timeUntilNextTx = 0;
    Q_EMIT timeUntilNextTxChanged();
    m_currentSequenceRepeatCount = 0;
    Q_EMIT currentSequenceRepeatCountChanged();
    m_sequenceCompleted = false;
    resetTxState();
    setSequenceRunning(false);
    flushTxPayloads();
    log(QStringLiteral("--- Tx SEQUENCE STOP/RESET ---"));
}

void TxManager::scheduleNextTx()
{
    switch (m_selectedProfile) {
    case PERIODIC:
        schedulePeriodicTx();
        return;
    case PREPASS:
        schedulePrepassTx();
        return;
    case PREPASS_ON_MODULE:
        // From the event loop: it makes a request, and the caller may be the handler of an answer.
        QTimer::singleShot(c_moduleDelay, this, [this, run = m_run] {
            if (run == m_run) {
                schedulePrepassOnModuleTx();
            }
        });
        return;
    }
    ZEPGUI_ASSERT(false, "Invalid Tx profile value", c_source);
}

void TxManager::armSchedule(qint64 milliseconds)
{
    if (!isGoingOn()) {
        return; // ended inside a request
    }
    // One that is too far for a timer is reached by way of followClock().
    m_scheduleTimer->start(static_cast<int>(std::clamp<qint64>(milliseconds, 0, std::numeric_limits<int>::max())));
    m_scheduleDue = currentUtc().addMSecs(milliseconds);
    refreshTimeUntilNextTx();
}

void TxManager::onScheduleOver()
{
    if (m_selectedProfile == PREPASS_ON_MODULE) {
        onPassBoundary(); // an expiry is no Tx in this profile
        return;
    }
    if (m_currentTxCount >= m_payloadListModel->getRedundancy(m_currentIndex)) {
        if (m_currentIndex + 1 == m_payloadListModel->rowCount()) {
            // The redundancy has fallen below what was sent already: nothing is left.
            if (m_ackPending) {
                scheduleNextTx(); // to look again once the answer is there
            } else {
                finishRepetition();
            }
            return;
        }
        ++m_currentIndex;
        m_currentTxCount = 1;
    } else {
        ++m_currentTxCount;
    }
    if (!checkPayloadBeforeTx(m_currentIndex)) {
        return; // edited since it was checked last
    }
    const quint64 run = m_run;
    const bool accepted = transmitPayload();
    // The sequence may have been stopped inside the request, by a reset of the device or a lost line: what is armed
    // now would send for a sequence that no longer runs.
    if (!isRunning(run)) {
        return;
    }
    if (!isLastTx()) {
        scheduleNextTx();
    } else if (!accepted && !m_ackPending) {
        finishRepetition(); // no answer will come to do it
    }
}

bool TxManager::transmitPayload()
{
    const quint64 run = m_run;
    m_transmitting = true;
    const bool accepted = requestTx(m_payloadListModel->getMessage(m_currentIndex),
                                    m_payloadListModel->getOptions(m_currentIndex), false);
    m_transmitting = false;
    if (!accepted) {
        log(QStringLiteral("Unable to write Tx command"));
        return false;
    }
    if (!isRunning(run)) {
        return false; // stopped inside the request, which has settled what is awaited
    }
    m_sentIndex = m_currentIndex;
    m_sentTxCount = m_currentTxCount;
    setAckPending(true);
    m_payloadListModel->setStatus(m_currentIndex, Payload::ACTIVE);
    return true;
}

void TxManager::flushTxPayloads()
{
    if (!requestTx(QString(), m_payloadListModel->getOptions(m_currentIndex), true)) {
        log(QStringLiteral("Unable to flush Tx payloads list"));
    }
}

bool TxManager::isFirstTx() const
{
    return m_currentIndex == 0 && m_currentTxCount == 0 && m_currentSequenceRepeatCount == 0;
}

bool TxManager::isLastTx() const
{
    return m_currentIndex == m_payloadListModel->rowCount() - 1 &&
           m_currentTxCount >= m_payloadListModel->getRedundancy(m_currentIndex);
}

bool TxManager::checkPayloadBeforeTx(int index)
{
    if (m_payloadListModel->getStatus(static_cast<uchar>(index)) != Payload::ERROR) {
        return true;
    }
    // Names the current payload, also when the bad one is the next.
    const QString error = QStringLiteral("Payload P") + QString::number(m_currentIndex) + QStringLiteral(" (") +
                          m_payloadListModel->getMessage(m_currentIndex) +
                          QStringLiteral(") is not correctly formatted.\r\nLength must be ") +
                          m_modulationModel->allowedSizeListStr() +
                          QStringLiteral(" bytes\r\n(minus two bytes if ack or downlink options are enabled).");
    Q_EMIT txErrorOccured(error);
    stop();
    Q_EMIT sequenceStopped();
    return false;
}

void TxManager::onTxDone(const QString &data)
{
    if (!m_ackPending) {
        return;
    }
    if (!m_sequenceRunning || m_sequenceCompleted) {
        setAckPending(false);
        return;
    }
    // While a Tx is being requested, an answer is a late one, to the Tx before.
    const bool isLate = m_transmitting;
    const uchar index = isLate ? m_sentIndex : m_currentIndex;
    const uchar txCount = isLate ? m_sentTxCount : m_currentTxCount;
    const QString message = m_payloadListModel->getMessage(index);
    const uchar redundancy = m_payloadListModel->getRedundancy(index);
    if (data.toUpper() == message) {
        log(QStringLiteral("Data ") + message + QStringLiteral(" successfully transmitted! (") +
            QString::number(txCount) + QLatin1Char('/') + QString::number(redundancy) + QLatin1Char(')'));
    } else {
        log(QStringLiteral("Data ") + message + QStringLiteral(" could not be sent"));
    }
    m_payloadListModel->setTxCount(index, txCount);
    if (txCount < redundancy) {
        m_payloadListModel->setStatus(index, Payload::PENDING);
        if (m_selectedProfile == PREPASS_ON_MODULE) {
            // Of a Tx that was in the air when an earlier sequence was stopped, or of a pass that the clock of the
            // interface has not begun yet. The payload may be in the module or not.
            m_mustQueueAgain = true;
            return;
        }
    } else {
        m_payloadListModel->setStatus(index, Payload::COMPLETE);
        m_mustQueueAgain = false;
        if (const int next = index + 1; !isLate && next < m_payloadListModel->rowCount()) {
            if (!checkPayloadBeforeTx(next)) {
                settleAck();
                return;
            }
            m_payloadListModel->setStatus(next, Payload::PENDING);
            Q_EMIT currentIndexUpdated(static_cast<uchar>(next));
            if (m_selectedProfile == PREPASS_ON_MODULE) {
                ++m_currentIndex;
                m_currentTxCount = 0; // until the module has it: a result can come twice
                scheduleNextTx();
                return; // the next payload waits in the module: an answer stays awaited
            }
        }
    }
    // First, so that a second answer, which can come while what follows waits, finds nothing awaited.
    setAckPending(false);
    if (!isLate) {
        goOnAfterAnswer();
    }
}

void TxManager::onTxFailed()
{
    if (!m_ackPending) {
        return;
    }
    setAckPending(false);
    if (!m_sequenceRunning || m_transmitting) {
        return;
    }
    if (m_selectedProfile == PREPASS_ON_MODULE) {
        m_mustQueueAgain = true;
    } else {
        goOnAfterAnswer();
    }
}

void TxManager::goOnAfterAnswer()
{
    if (isLastTx()) {
        finishRepetition();
    } else if (m_selectedProfile != PREPASS_ON_MODULE && !m_scheduleTimer->isActive()) {
        scheduleNextTx(); // what was the last Tx when it was made is not any more
    }
}

void TxManager::onLineLost()
{
    m_lineLost = true;
    m_scheduleTimer->stop();
    m_countdownTimer->stop();
    settleAck();
}

void TxManager::finishRepetition()
{
    ++m_currentSequenceRepeatCount;
    Q_EMIT currentSequenceRepeatCountChanged();
    log(QStringLiteral("--- Tx SEQUENCE COMPLETE (") + QString::number(m_currentSequenceRepeatCount) +
        QLatin1Char('/') + QString::number(m_repeatNum) + QStringLiteral(") ---"));
    if (m_currentSequenceRepeatCount == m_repeatNum) {
        m_sequenceCompleted = true;
        m_scheduleTimer->stop();
        Q_EMIT sequenceCompleted();
        return;
    }
    const quint64 run = m_run;
    scheduleNextTx(); // before the reset: the gap is chosen by the last count of the finished repetition
    if (!isRunning(run)) {
        return; // the profile cannot go on
    }
    resetTxState();
    m_payloadListModel->setStatus(0, Payload::PENDING);
    Q_EMIT currentIndexUpdated(0);
}

void TxManager::resetTxState()
{
    m_currentIndex = 0;
    m_currentTxCount = 0;
    for (int row = 0; row < m_payloadListModel->rowCount(); ++row) {
        m_payloadListModel->setTxCount(row, 0);
        m_payloadListModel->setStatus(row, Payload::NONE);
    }
}

void TxManager::refreshTimeUntilNextTx()
{
    m_timeUntilNextTx = m_scheduleTimer->remainingTime() / c_msPerSecond + 1;
    Q_EMIT timeUntilNextTxChanged();
}

void TxManager::onCountdownRefreshOver()
{
    refreshTimeUntilNextTx();
}
