// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "BulletinDocument.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <cmath>

namespace {

QString documentDate(const QDateTime &date)
{
    return date.toString(QStringLiteral("yyyy-MM-dd_hh:mm:ss"));
}

QJsonObject status(const FleetSatellite &satellite)
{
    static const QStringList downlinks{QStringLiteral("Downlink transmitter OFF"), QStringLiteral("HELIO-4 TX ON"),
                                       QStringLiteral("Spare, N/A"), QStringLiteral("HELIO-3 TX ON")};
    static const QStringList uplinks{QStringLiteral("HELIO-3 payload"), QStringLiteral("HELIO-Mirel payload"),
                                     QStringLiteral("HELIO-4 payload"), QStringLiteral("OUT OF SERVICE")};
    return {{QStringLiteral("fleetfeedIdent"), satellite.ident},
            {QStringLiteral("downlinkStatus"), downlinks.at(satellite.downlinkStatus)},
            {QStringLiteral("operatingStatus"), uplinks.at(satellite.uplinkStatus)}};
}

QJsonObject bulletin(const FleetSatellite &satellite, const QDateTime &now)
{
    const Orbit orbit = satellite.orbit.asOf(now);
    return {{QStringLiteral("date"), documentDate(orbit.nodeDate)},
            {QStringLiteral("semiMajorAxis"), orbit.semiMajorAxis},
            {QStringLiteral("semiMajorAxisDrift"), satellite.semiMajorAxisDrift},
            {QStringLiteral("inclination"), orbit.inclination},
            {QStringLiteral("ascendantNodeLongitude"), std::round(orbit.nodeLongitude * 1000) / 1000},
            {QStringLiteral("ascendantNodeDrift"), orbit.nodeDrift},
            {QStringLiteral("orbitalPeriod"), orbit.periodMinutes}};
}

} // namespace

QByteArray bulletinDocument(const std::vector<FleetSatellite> &satellites, const QDateTime &now, BulletinMode mode)
{
    QJsonArray list;
    for (const FleetSatellite &satellite : satellites) {
        QJsonObject links = status(satellite);
        if (list.size() == 1 && mode == BulletinMode::UnknownStatus) {
            links[QStringLiteral("operatingStatus")] = QStringLiteral("HELIO-9 payload");
        }
        if (list.size() == 1 && mode == BulletinMode::NoIdent) {
            links.remove(QStringLiteral("fleetfeedIdent"));
        }
        list += QJsonObject{{QStringLiteral("satellite"), satellite.name},
                            {QStringLiteral("broadcastedStatus"), links},
                            {QStringLiteral("aop"), bulletin(satellite, now)}};
    }
    QJsonObject root{{QStringLiteral("creationDate"), documentDate(now)},
                     {QStringLiteral("satellitesInformation"), list}};
    if (mode == BulletinMode::Errors) {
        root[QStringLiteral("errors")] = QJsonArray{QStringLiteral("the feed is being rebuilt")};
    }
    const QByteArray text = QJsonDocument(root).toJson();
    return mode == BulletinMode::Broken ? text.left(text.size() / 2) : text;
}
