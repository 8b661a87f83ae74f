// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The profile PREPASS_ON_MODULE: one payload at a time is queued in the module, which transmits it by itself in the
// next pass that it computes. Here the pass is followed on the clock: an expiry of the schedule timer is its start or
// its end, and the pass in question is the first row of the next-pass model.

#include "TxManager.h"

#include <algorithm>
#include <utility>

#include "Assertion.h"
#include "PayloadModel.h"
#include "PrepassModel.h"
#include "PrepassProfile.h"

namespace {

constexpr auto c_source = "src/TxManager";
constexpr qint64 c_longRequest = 1000;   // ms
constexpr qint64 c_firstPause = 1000;    // ms
constexpr qint64 c_longestPause = 10000; // ms
constexpr int c_pauseDoublings = 4;      // from the first to the longest, which cuts the last one

} // namespace

void TxManager::prepareModule()
{
    m_activePassIdxCount = 0;
    m_mustQueue = false;
    m_mustAsk = false;
    m_mustQueueAgain = false;
    m_nextPassFailures = 0;
    m_nextPassPause = 0;
    const quint64 run = m_run;
    flushTxPayloads();
    if (!isRunning(run)) {
        return; // stopped inside the request, as below, which has settled what is awaited
    }
    setAckPending(true); // stands for the payload that waits in the module from now on, not for one command
    askForNextPass();
}

void TxManager::schedulePrepassOnModuleTx()
{
    if (!isGoingOn()) {
        return; // ended since this was asked for
    }
    if (m_prepassProfile->nextPassModel()->rowCount() == 0) {
        stop();
        Q_EMIT txErrorOccured(QStringLiteral("Error: No satellite pass was computed/predicted!"));
        return;
    }
    m_mustQueue = true;
    serveModule();
}

void TxManager::serveModule()
{
    const quint64 run = m_run;
    if (m_servedRun == run) {
        return; // called inside one of the requests below, behind which the loop looks again
    }
    m_servedRun = run;
    while (isRunning(run) && (m_mustQueue || m_mustAsk)) {
        if (std::exchange(m_mustQueue, false)) {
            queuePayload();
        } else {
            m_mustAsk = false;
            askForNextPass();
        }
    }
    if (m_servedRun == run) {
        m_servedRun = 0;
    }
    if (isRunning(run)) {
        waitForNextPass();
    }
}

void TxManager::queuePayload()
{
    if (!checkPayloadBeforeTx(m_currentIndex)) {
        return;
    }
    const quint64 run = m_run;
    const uchar index = m_currentIndex;
    if (!requestTx(m_payloadListModel->getMessage(index), m_payloadListModel->getOptions(index), false)) {
        log(QStringLiteral("Unable to write Tx command"));
        m_mustQueueAgain = true;
        return;
    }
    if (!isRunning(run)) {
        return;
    }
    m_mustQueueAgain = false;
    m_payloadListModel->setStatus(index, Payload::PENDING);
    if (index > 0) {
        // The module may use the rest of the pass in which it sent the one before: the next answer completes it.
        m_currentTxCount = m_payloadListModel->getRedundancy(index);
    }
    if (!m_ackPending && m_currentSequenceRepeatCount == 0) {
        setAckPending(true); // an earlier Tx of it has failed
    }
}

void TxManager::askForNextPass()
{
    const quint64 run = m_run;
    const QDateTime asked = m_utcTime;
    m_nextPassAnswered = false;
    getSatelliteNextPass(m_payloadListModel->getOptions(m_currentIndex));
    if (!isRunning(run)) {
        return;
    }
    const PrepassModel *nextPass = m_prepassProfile->nextPassModel();
    if (m_nextPassAnswered && nextPass->rowCount() > 0 && nextPass->getEndUtc(0) > m_utcTime) {
        m_nextPassFailures = 0;
        return;
    }
    // The pass in the model is over, so that the next request follows at once, and the one behind it, without end.
    // The first repeat may, unless this request has already kept the user out for long.
    const bool wasLong = asked.msecsTo(m_utcTime) >= c_longRequest;
    m_nextPassFailures += m_nextPassFailures == 0 && wasLong ? 2 : 1;
    const int doublings = std::min(m_nextPassFailures - 2, c_pauseDoublings);
    m_nextPassPause = doublings < 0 ? 0 : std::min(c_firstPause << doublings, c_longestPause);
}

void TxManager::onPassBoundary()
{
    ZEPGUI_ASSERT(m_activePassIdxCount <= 1, "Invalid value for m_activePassIdxCount", c_source);
    if (m_activePassIdxCount == 0) {
        beginPass();
    } else {
        endPass();
    }
}

void TxManager::beginPass()
{
    PrepassModel *nextPass = m_prepassProfile->nextPassModel();
    m_activePassIdxCount = 1;
    nextPass->setIsActive(0, true);
    m_payloadListModel->setStatus(m_currentIndex, Payload::ACTIVE);
    m_currentTxCount = m_payloadListModel->getRedundancy(m_currentIndex); // the next answer completes the payload
    waitUntil(nextPass->getEndUtc(0));
}

void TxManager::endPass()
{
    m_activePassIdxCount = 0;
    if (!checkPayloadBeforeTx(m_currentIndex)) {
        return;
    }
    m_payloadListModel->setStatus(m_currentIndex, Payload::PENDING);
    m_mustQueue = m_mustQueue || m_mustQueueAgain;
    m_mustAsk = true;
    serveModule();
}

void TxManager::waitForNextPass()
{
    waitUntil(m_prepassProfile->nextPassModel()->getStartUtc(0), std::exchange(m_nextPassPause, 0));
}

void TxManager::waitForBoundary()
{
    const PrepassModel *nextPass = m_prepassProfile->nextPassModel();
    waitUntil(m_activePassIdxCount == 0 ? nextPass->getStartUtc(0) : nextPass->getEndUtc(0));
}

void TxManager::waitUntil(const QDateTime &boundary, qint64 atLeast)
{
    armSchedule(std::max(m_utcTime.msecsTo(boundary), atLeast)); // a boundary that is past is reached at once
}
