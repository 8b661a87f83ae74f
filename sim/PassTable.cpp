// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PassTable.h"

#include <QStringList>
#include <QTime>

#include <algorithm>
#include <utility>

namespace {

QString tableDate(const QDateTime &date)
{
    return date.toString(QStringLiteral("MM-dd-yyyy hh:mm:ss"));
}

QString number(double degrees)
{
    return QString::number(degrees, 'f', 2);
}

} // namespace

QByteArray passTable(const std::vector<FleetSatellite> &satellites, const PassCriteria &criteria,
                     const PassTableOptions &options)
{
    const QDateTime until = options.from.addSecs(options.hours * qint64(3600));
    std::vector<std::pair<QString, Pass>> passes;
    for (const FleetSatellite &satellite : satellites) {
        if (satellite.uplinkStatus == FleetSatellite::outOfService) {
            continue;
        }
        const PassPredictor predictor(satellite.orbit, criteria);
        const auto running = predictor.passAt(options.from);
        for (auto pass = running ? running : predictor.nextPass(options.from, until); pass;
             pass = predictor.nextPass(pass->end, until)) {
            passes.emplace_back(satellite.name, *pass);
        }
    }
    std::stable_sort(passes.begin(), passes.end(),
                     [](const auto &a, const auto &b) { return a.second.start < b.second.start; });

    const QStringList header{
        QStringLiteral("Satellite"),     QStringLiteral("Start date/time"), QStringLiteral("Middle date/time"),
        QStringLiteral("End date/time"), QStringLiteral("Duration"),        QStringLiteral("Middle elevation"),
        QStringLiteral("Start azimuth"), QStringLiteral("Middle azimuth"),  QStringLiteral("End azimuth")};
    QString text = header.join(options.separator) + u'\n';
    for (const auto &[name, pass] : passes) {
        const QString duration = QTime(0, 0).addSecs(pass.durationSeconds()).toString(QStringLiteral("hh:mm:ss"));
        const QStringList fields{name,
                                 tableDate(pass.start),
                                 tableDate(pass.middle()),
                                 tableDate(pass.end),
                                 duration,
                                 number(pass.middleElevation),
                                 number(pass.startAzimuth),
                                 number(pass.middleAzimuth),
                                 number(pass.endAzimuth)};
        text += fields.join(options.separator) + u'\n';
    }
    return text.toUtf8();
}
