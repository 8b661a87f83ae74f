// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The document of the web service:
//   {"creationDate": "2026-01-07_10:00:00",
//    "satellitesInformation": [{"satellite": name,
//                               "broadcastedStatus": {"fleetfeedIdent", "downlinkStatus", "operatingStatus"},
//                               "aop": {"date", and the six numbers of the bulletin}}]}
// or {"errors": ...}.

#include "SatelliteAopModel.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "ProcessLog.h"

namespace {

QDateTime dateOf(QString text)
{
    return QDateTime::fromString(text.replace(QLatin1Char('_'), QLatin1Char('T')) + QLatin1Char('Z'), Qt::ISODate);
}

} // namespace

bool SatelliteAopModel::loadAopJson(const QByteArray &data)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (document.isNull()) {
        qCCritical(lcEvents).noquote() << "Error:" << error.errorString();
        return false;
    }
    const QJsonObject root = document.object();
    if (!document.isObject() || root.contains(QLatin1String("errors"))) {
        qCCritical(lcEvents, "AOP data error (no consistent object)");
        return false;
    }

    m_creationDate = dateOf(root[QLatin1String("creationDate")].toString());
    const QJsonArray satellites = root[QLatin1String("satellitesInformation")].toArray();
    int withoutIdent = 0; // told once: a document may hold millions
    for (const QJsonValueConstRef satellite : satellites) {
        const QJsonObject status = satellite[QLatin1String("broadcastedStatus")].toObject();
        const QJsonObject aop = satellite[QLatin1String("aop")].toObject();
        const QString ident = status[QLatin1String("fleetfeedIdent")].toString();
        if (ident.isEmpty()) {
            ++withoutIdent;
            continue;
        }
        updateOrAddSatellite(
            ident.front().toUpper(), dateOf(aop[QLatin1String("date")].toString()),
            aop[QLatin1String("semiMajorAxis")].toDouble(), aop[QLatin1String("inclination")].toDouble(),
            aop[QLatin1String("ascendantNodeLongitude")].toDouble(),
            aop[QLatin1String("ascendantNodeDrift")].toDouble(), aop[QLatin1String("orbitalPeriod")].toDouble(),
            aop[QLatin1String("semiMajorAxisDrift")].toDouble(), satellite[QLatin1String("satellite")].toString(),
            SatelliteAop::downlinkStatusOf(status[QLatin1String("downlinkStatus")].toString()),
            SatelliteAop::uplinkStatusOf(status[QLatin1String("operatingStatus")].toString()));
    }
    if (withoutIdent > 0) {
        qCCritical(lcEvents) << "Satellites without a fleetfeedIdent in AOP data, skipped:" << withoutIdent;
    }
    Q_EMIT creationDateChanged();
    return true;
}
