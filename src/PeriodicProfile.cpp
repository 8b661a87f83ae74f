// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PeriodicProfile.h"

PeriodicProfile::PeriodicProfile(QObject *parent) : QObject(parent) {}

void PeriodicProfile::setPeriod(uchar period)
{
    m_period = period;
    Q_EMIT periodChanged();
}

void PeriodicProfile::setRedundancy(uchar redundancy)
{
    m_redundancy = redundancy;
    Q_EMIT redundancyChanged();
}

void PeriodicProfile::setDelay(uchar delay)
{
    m_delay = delay;
    Q_EMIT delayChanged();
}
