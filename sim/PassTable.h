// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Fleet.h"

#include <QByteArray>
#include <QChar>

/// What a pass table is made of.
struct PassTableOptions
{
    QDateTime from; ///< UTC; a pass that runs then is in it
    int hours = 24;
    QChar separator = u',';
};

/// The passes of the satellites in service, as the operator's portal exports them: a header line, and a line for each
/// pass, the earliest first.
[[nodiscard]] QByteArray passTable(const std::vector<FleetSatellite> &satellites, const PassCriteria &criteria,
                                   const PassTableOptions &options);
