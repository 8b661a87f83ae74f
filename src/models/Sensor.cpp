// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Sensor.h"

Sensor::Sensor(QObject *parent, const QString &name, bool enable, bool alert, bool hasAlertCmd,
               const QString &thresholdTitle, const QString &thresholdValues)
    : QObject(parent)
    , m_name(name)
    , m_enable(enable)
    , m_alert(alert)
    , m_hasAlertCmd(hasAlertCmd)
    , m_thresholdTitle(thresholdTitle)
    , m_thresholdValues(thresholdTitle.isEmpty() ? QString::fromLatin1(s_noThreshold) : thresholdValues)
{
}
