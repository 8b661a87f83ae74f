// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QMap>
#include <QtQmlIntegration>

#include "Sensor.h"

/// The sensors of a device, one row each in the order of their ids, and how often they are acquired. A local copy:
/// editing it sends nothing.
class SensorModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(
        ushort acquisitionPeriod READ acquisitionPeriod WRITE setAcquisitionPeriod NOTIFY acquisitionPeriodChanged)

public:
    enum Id {
        GNSS = 0,
        TEMPERATURE = 1,
        HUMIDITY = 2,
        PRESSURE = 3,
        LIGHT = 4,
        ACCELEROMETER = 5,
        DRY_CONTACT = 6,
        PUSH_BUTTON = 7,
    };
    Q_ENUM(Id)

    enum Role : int {
        IdRole = Qt::UserRole + 1,
        NameRole,
        EnableRole,
        AlertRole,
        HasAlertCmdRole,
        ThresholdTitleRole,
        ThresholdValuesRole,
    };

    /// The sensors stay their parents'; they must outlive the model.
    SensorModel(QObject *parent, const QMap<Id, Sensor *> &sensorMap);

    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// A row or a role that does not exist fails an assertion.
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    /// Notifies even if nothing changed. False for a row that does not exist; a role that cannot be written fails an
    /// assertion.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// In seconds.
    [[nodiscard]] ushort acquisitionPeriod() const { return m_acquisitionPeriod; }
    [[nodiscard]] QMap<Id, Sensor *> sensorMap() const { return m_sensorMap; }

    void setEnable(uchar row, bool enable);
    void setAlert(uchar row, bool alert);
    void setAlert(Id id, bool alert);
    void setThresholdValues(Id id, const QString &values);

public Q_SLOTS:
    void setAcquisitionPeriod(ushort acquisitionPeriod);

Q_SIGNALS:
    void acquisitionPeriodChanged();

private:
    [[nodiscard]] QModelIndex indexOf(Id id) const;

    quint16 m_acquisitionPeriod = 3600;
    QMap<Id, Sensor *> m_sensorMap;
};
