// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SatelliteAop.h"

#include <QMap>

#include "WireNumber.h"

namespace {

const QMap<SatelliteAop::DownlinkStatus, QString> &downlinkTexts()
{
    static const QMap<SatelliteAop::DownlinkStatus, QString> texts{
        {SatelliteAop::DNLK_OFF, QStringLiteral("Downlink transmitter OFF")},
        {SatelliteAop::DNLK_HELIO_4_ON, QStringLiteral("HELIO-4 TX ON")},
        {SatelliteAop::DNLK_SPARE_NA, QStringLiteral("Spare, N/A")},
        {SatelliteAop::DNLK_HELIO_3_ON, QStringLiteral("HELIO-3 TX ON")},
    };
    return texts;
}

const QMap<SatelliteAop::UplinkStatus, QString> &uplinkTexts()
{
    static const QMap<SatelliteAop::UplinkStatus, QString> texts{
        {SatelliteAop::UPLK_HELIO_3_ON, QStringLiteral("HELIO-3 payload")},
        {SatelliteAop::UPLK_HELIO_NEO_MIREL_ON, QStringLiteral("HELIO-Mirel payload")},
        {SatelliteAop::UPLK_HELIO_4_ON, QStringLiteral("HELIO-4 payload")},
        {SatelliteAop::UPLK_OUT_OF_SERVICE, QStringLiteral("OUT OF SERVICE")},
    };
    return texts;
}

QString tooltipLine(const char *label, const QString &value)
{
    return QStringLiteral("<b>") + QLatin1String(label) + QStringLiteral(":</b> ") + value;
}

} // namespace

SatelliteAop::SatelliteAop(QObject *parent) : QObject(parent) {}

SatelliteAop::DownlinkStatus SatelliteAop::downlinkStatusOf(const QString &text)
{
    return downlinkTexts().key(text, DNLK_OFF);
}

SatelliteAop::UplinkStatus SatelliteAop::uplinkStatusOf(const QString &text)
{
    return uplinkTexts().key(text, UPLK_HELIO_3_ON);
}

QString SatelliteAop::downlinkStatusText() const
{
    return downlinkStatus == DNLK_OFF ? QStringLiteral("OFF")
                                      : downlinkTexts().value(downlinkStatus).remove(QStringLiteral("TX ON"));
}

QString SatelliteAop::uplinkStatusText() const
{
    return uplinkStatus == UPLK_OUT_OF_SERVICE ? QStringLiteral("OFF")
                                               : uplinkTexts().value(uplinkStatus).remove(QStringLiteral("payload"));
}

QString SatelliteAop::aopTooltipHtml() const
{
    const QString lineEnd = QStringLiteral("<br>");
    return tooltipLine("fleetfeedIdent", QString(ident).toHtmlEscaped()) + lineEnd +
           tooltipLine("date", date.toString(Qt::TextDate)) + lineEnd +
           tooltipLine("semiMajorAxis", wireNumber(semiMajorAxis)) + QStringLiteral(" km") + lineEnd +
           tooltipLine("semiMajorAxisDrift", wireNumber(semiMajorAxisDrift)) + QStringLiteral(" meter/day") + lineEnd +
           tooltipLine("inclination", wireNumber(inclination)) + QStringLiteral("°") + lineEnd +
           tooltipLine("ascendantNodeLongitude", wireNumber(ascendantNodeLongitude)) + QStringLiteral(" °") + lineEnd +
           tooltipLine("ascendantNodeDrift", wireNumber(ascendantNodeDrift)) + QStringLiteral("°") + lineEnd +
           tooltipLine("orbitalPeriod", wireNumber(orbitalPeriod)) + QStringLiteral(" min");
}

QStringList SatelliteAop::aopAtParameters() const
{
    return {QString(ident),
            date.toString(Qt::ISODate),
            wireNumber(semiMajorAxis),
            wireNumber(inclination),
            wireNumber(ascendantNodeLongitude),
            wireNumber(ascendantNodeDrift),
            wireNumber(orbitalPeriod),
            wireNumber(semiMajorAxisDrift)};
}

QStringList SatelliteAop::statusAtParameters() const
{
    return {QString(ident), QString::number(downlinkStatus), QString::number(uplinkStatus)};
}
