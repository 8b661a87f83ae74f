// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

/// One sensor of a device: the item of SensorModel, which alone changes it.
class Sensor : public QObject
{
    Q_OBJECT

public:
    /// Stands for the thresholds of a sensor that has none.
    static constexpr auto s_noThreshold = "NA";

    /// \a hasAlertCmd tells whether the device has an alert command for this sensor. Without a \a thresholdTitle the
    /// sensor has no thresholds, whatever \a thresholdValues says.
    Sensor(QObject *parent, const QString &name, bool enable, bool alert, bool hasAlertCmd,
           const QString &thresholdTitle, const QString &thresholdValues);

    [[nodiscard]] QString name() const { return m_name; }
    /// Whether the sensor is acquired.
    [[nodiscard]] bool enable() const { return m_enable; }
    /// Whether the sensor raises alerts.
    [[nodiscard]] bool alert() const { return m_alert; }
    [[nodiscard]] bool hasAlertCmd() const { return m_hasAlertCmd; }
    /// Label of the thresholds; empty if there are none.
    [[nodiscard]] QString thresholdTitle() const { return m_thresholdTitle; }
    /// As on the wire: numbers between commas, in the unit of the sensor; or s_noThreshold.
    [[nodiscard]] QString thresholdValues() const { return m_thresholdValues; }

private:
    friend class SensorModel;

    QString m_name;
    bool m_enable;
    bool m_alert;
    bool m_hasAlertCmd;
    QString m_thresholdTitle;
    QString m_thresholdValues;
};
