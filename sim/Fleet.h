// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PassPredictor.h"

#include <QString>

#include <vector>

/// One satellite of the operator, with the numbers of its two links as they go to a module.
struct FleetSatellite
{
    static constexpr int outOfService = 3; ///< uplink status

    QString name;
    QString ident; ///< one hexadecimal digit, in upper case
    int downlinkStatus = 0;
    int uplinkStatus = 0;
    Orbit orbit;
    double semiMajorAxisDrift = 0; ///< metres a day
    bool isInFirmware = true;      ///< whether the modules were made for it
};

/// The satellites there are, with the bulletins that the modules left the factory with. The seed decides where they
/// stood then; out of date or not, the passes of a bulletin stay the same.
[[nodiscard]] std::vector<FleetSatellite> fleet(quint32 seed);
