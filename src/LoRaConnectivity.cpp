// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LoRaConnectivity.h"

LoRaConnectivity::LoRaConnectivity(QObject *parent) : QObject(parent) {}

void LoRaConnectivity::clear()
{
    m_devEui.clear();
    m_appEui.clear();
    m_appKey.clear();
    m_ackEnabled = true;
    m_redundancy = s_defaultRedundancy;
}

QString LoRaConnectivity::toWireHex(const QString &hex)
{
    QString wire = hex;
    for (qsizetype comma = 2; comma < wire.size(); comma += 3) {
        wire.insert(comma, QLatin1Char(','));
    }
    return wire;
}

void LoRaConnectivity::setDevEui(const QString &devEui)
{
    m_devEui = devEui;
    Q_EMIT devEuiChanged();
}

void LoRaConnectivity::setAppEui(const QString &appEui)
{
    m_appEui = appEui;
    Q_EMIT appEuiChanged();
}

void LoRaConnectivity::setAppKey(const QString &appKey)
{
    m_appKey = appKey;
    Q_EMIT appKeyChanged();
}

void LoRaConnectivity::setAckEnabled(bool ackEnabled)
{
    m_ackEnabled = ackEnabled;
    Q_EMIT ackEnabledChanged();
}

void LoRaConnectivity::setRedundancy(uchar redundancy)
{
    m_redundancy = redundancy;
    Q_EMIT redundancyChanged();
}
