// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The profile PREPASS_ON_MODULE: one payload at a time is queued in the module, which transmits it by itself in the
// next pass that it computes. Here the pass is followed on the clock: an expiry of the schedule timer is its start or
// its end, and the pass in question is the first row of the next-pass model.

#include "TxManager.h"

#include <algorithm>

#include <QTimer>

#include "Assertion.h"
#include "PayloadModel.h"
#include "PrepassModel.h"
#include "PrepassProfile.h"

namespace {

constexpr auto c_source = "src/TxManager";

} // namespace

void TxManager::prepareModule()
{
    m_activePassIdxCount = 0;
    flushTxPayloads();
    if (!m_sequenceRunning) {
        return; // stopped inside the request, as below: whoever stopped it has settled what is awaited
    }
    setAckPending(true); // stands for the payload that waits in the module from now on, not for one command
    getSatelliteNextPass(m_payloadListModel->getOptions(m_currentIndex));
}

void TxManager::schedulePrepassOnModuleTx()
{
    if (!m_sequenceRunning) {
        return; // stopped since this was asked for
    }
    if (m_prepassProfile->nextPassModel()->rowCount() == 0) {
        stop();
        Q_EMIT txErrorOccured(QStringLiteral("Error: No satellite pass was computed/predicted!"));
        return;
    }
    const quint64 run = m_run;
    queuePayload();
    if (isRunning(run)) {
        waitForNextPass();
        refreshTimeUntilNextTx();
    }
}

void TxManager::queuePayload()
{
    if (!requestTx(m_payloadListModel->getMessage(m_currentIndex), m_payloadListModel->getOptions(m_currentIndex),
                   false)) {
        log(QStringLiteral("Unable to write Tx command"));
        return;
    }
    if (m_sequenceRunning) {
        m_payloadListModel->setStatus(m_currentIndex, Payload::PENDING);
    }
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
    const quint64 run = m_run;
    getSatelliteNextPass(m_payloadListModel->getOptions(m_currentIndex));
    if (isRunning(run)) {
        waitForNextPass();
    }
}

void TxManager::waitForNextPass()
{
    waitUntil(m_prepassProfile->nextPassModel()->getStartUtc(0));
}

void TxManager::waitUntil(const QDateTime &boundary)
{
    // A boundary that is past is reached at once. One too far for a timer wraps round.
    m_scheduleTimer->start(static_cast<int>(std::max(m_utcTime.msecsTo(boundary), qint64{0})));
}
