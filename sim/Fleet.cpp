// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Fleet.h"

#include <QRandomGenerator>

namespace {

constexpr int secondsPerDay = 24 * 60 * 60;

} // namespace

std::vector<FleetSatellite> fleet(quint32 seed)
{
    constexpr int oos = FleetSatellite::outOfService;
    // clang-format off
    std::vector<FleetSatellite> satellites{
        // name, ident, downlink, uplink, orbit: date and longitude to come, drift, period, inclination, axis; axis drift, in firmware
        {QStringLiteral("Aurora-3"), QStringLiteral("3"), 3, 0, {{}, 0, -23.7431, 94.9021, 97.4612, 6891.72}, -1.37, true},
        {QStringLiteral("Aurora-4"), QStringLiteral("4"), 1, 2, {{}, 0, -23.7552, 94.9506, 97.4588, 6894.05}, -1.42, true},
        {QStringLiteral("Boreas-A"), QStringLiteral("A"), 2, 1, {{}, 0, -24.1408, 96.4926, 97.6405, 6968.11}, -0.91, true},
        {QStringLiteral("Boreas-D"), QStringLiteral("D"), 0, 1, {{}, 0, -25.3004, 100.921, 98.5017, 7180.33}, -0.42, true},
        {QStringLiteral("Boreas-E"), QStringLiteral("E"), 0, oos, {{}, 0, -25.3107, 100.973, 98.7002, 7182.9}, -0.4, true},
        {QStringLiteral("Cirrus-1"), QStringLiteral("C"), 3, 0, {{}, 0, -24.6904, 97.2713, 51.6402, 7005.44}, -0.77, false},
    };
    // clang-format on
    const QDateTime factoryDay(QDate(2026, 1, 5), QTime(0, 0), Qt::UTC);
    QRandomGenerator random(seed);
    for (FleetSatellite &satellite : satellites) {
        satellite.orbit.nodeDate = factoryDay.addSecs(random.bounded(secondsPerDay));
        satellite.orbit.nodeLongitude = random.bounded(-180'000, 180'000) / 1000.0;
    }
    return satellites;
}
