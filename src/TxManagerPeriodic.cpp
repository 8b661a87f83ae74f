// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TxManager.h"

#include "PeriodicProfile.h"

namespace {

constexpr int c_msPerMinute = 60000;
constexpr int c_msPerSecond = 1000;

} // namespace

void TxManager::schedulePeriodicTx()
{
    if (isFirstTx()) {
        onScheduleOver(); // the first Tx does not wait, and arms what follows
        return;
    }
    const int interval = m_currentTxCount == m_periodicProfile->redundancy()
                             ? m_periodicProfile->period() * c_msPerMinute
                             : m_periodicProfile->delay() * c_msPerSecond;
    armSchedule(interval);
}
