// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QtQmlIntegration>

/// One satellite: its bulletin, which is what a module needs to predict its passes, and the state of its two links.
class SatelliteAop : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    /// The numbers are sent to the module.
    enum DownlinkStatus : int {
        DNLK_OFF,
        DNLK_HELIO_4_ON,
        DNLK_SPARE_NA,
        DNLK_HELIO_3_ON,
        DNLK_NA, ///< Not known
    };
    Q_ENUM(DownlinkStatus)

    /// The numbers are sent to the module.
    enum UplinkStatus : int {
        UPLK_HELIO_3_ON,
        UPLK_HELIO_NEO_MIREL_ON,
        UPLK_HELIO_4_ON,
        UPLK_OUT_OF_SERVICE,
        UPLK_NA, ///< Not known
    };
    Q_ENUM(UplinkStatus)

    explicit SatelliteAop(QObject *parent);

    /// The status that the web service calls \a text; the status of number 0 if it calls none so.
    [[nodiscard]] static DownlinkStatus downlinkStatusOf(const QString &text);
    [[nodiscard]] static UplinkStatus uplinkStatusOf(const QString &text);

    /// The status in the interface's short words: "OFF", empty for one that is not known, or the payload's name with
    /// a blank behind it.
    [[nodiscard]] QString downlinkStatusText() const;
    [[nodiscard]] QString uplinkStatusText() const;
    /// The bulletin as rich text, a field a line.
    [[nodiscard]] QString aopTooltipHtml() const;

    /// Parameters of the module's command AOP, in its order.
    [[nodiscard]] QStringList aopAtParameters() const;
    /// Parameters of the module's command SAT, in its order.
    [[nodiscard]] QStringList statusAtParameters() const;

    QString satelliteName; ///< "NA" until the web service has named it
    QChar ident;           ///< Upper case; what a satellite is known by everywhere
    DownlinkStatus downlinkStatus = DNLK_NA;
    UplinkStatus uplinkStatus = UPLK_NA;
    QDateTime date;                    ///< Of the bulletin, UTC; invalid if it could not be read
    double semiMajorAxis = 0;          ///< Kilometres
    double inclination = 0;            ///< Degrees
    double ascendantNodeLongitude = 0; ///< Degrees
    double ascendantNodeDrift = 0;     ///< Degrees
    double orbitalPeriod = 0;          ///< Minutes
    double semiMajorAxisDrift = 0;     ///< Metres per day
};
