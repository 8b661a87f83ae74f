// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQmlIntegration>

/// Where the beacon stands. A value, copied whole.
struct Position
{
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(double latitude MEMBER latitude)
    Q_PROPERTY(double longitude MEMBER longitude)

public:
    double latitude = 0;  ///< Geodetic, degrees
    double longitude = 0; ///< Degrees
};
