// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SensorModel.h"

#include "Assertion.h"

#include <iterator>

namespace {
constexpr auto c_source = "src/models/SensorModel";
}

SensorModel::SensorModel(QObject *parent, const QMap<Id, Sensor *> &sensorMap)
    : QAbstractListModel(parent), m_sensorMap(sensorMap)
{
}

int SensorModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_sensorMap.size());
}

QVariant SensorModel::data(const QModelIndex &index, int role) const
{
    ZEPGUI_ASSERT(index.row() >= 0 && index.row() < m_sensorMap.size(), "Invalid index to access sensor model data",
                  c_source);
    const auto entry = std::next(m_sensorMap.cbegin(), index.row());
    const Sensor *sensor = entry.value();
    switch (role) {
    case IdRole:
        return int{entry.key()};
    case NameRole:
        return sensor->name();
    case EnableRole:
        return sensor->enable();
    case AlertRole:
        return sensor->alert();
    case HasAlertCmdRole:
        return sensor->hasAlertCmd();
    case ThresholdTitleRole:
        return sensor->thresholdTitle();
    case ThresholdValuesRole:
        return sensor->thresholdValues();
    default:
        ZEPGUI_ASSERT(false, "Invalid role value to access sensor model data", c_source);
    }
    return {};
}

bool SensorModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (index.row() < 0 || index.row() >= m_sensorMap.size()) {
        return false;
    }
    Sensor *sensor = std::next(m_sensorMap.cbegin(), index.row()).value();
    switch (role) {
    case EnableRole:
        sensor->m_enable = value.toBool();
        break;
    case AlertRole:
        sensor->m_alert = value.toBool();
        break;
    case ThresholdValuesRole:
        sensor->m_thresholdValues = value.toString();
        break;
    default:
        ZEPGUI_ASSERT(false, "Invalid role value to update sensor model data", c_source);
    }
    Q_EMIT dataChanged(index, index, {role});
    return true;
}

QHash<int, QByteArray> SensorModel::roleNames() const
{
    return {
        {IdRole, "id"},
        {NameRole, "name"},
        {EnableRole, "enable"},
        {AlertRole, "alert"},
        {HasAlertCmdRole, "hasAlertCmd"},
        {ThresholdTitleRole, "thresholdTitle"},
        {ThresholdValuesRole, "thresholdValues"},
    };
}

void SensorModel::setEnable(uchar row, bool enable)
{
    setData(index(row), enable, EnableRole);
}

void SensorModel::setAlert(uchar row, bool alert)
{
    setData(index(row), alert, AlertRole);
}

void SensorModel::setAlert(Id id, bool alert)
{
    setData(indexOf(id), alert, AlertRole);
}

void SensorModel::setThresholdValues(Id id, const QString &values)
{
    setData(indexOf(id), values, ThresholdValuesRole);
}

void SensorModel::setAcquisitionPeriod(ushort acquisitionPeriod)
{
    m_acquisitionPeriod = acquisitionPeriod;
    Q_EMIT acquisitionPeriodChanged();
}

QModelIndex SensorModel::indexOf(Id id) const
{
    const auto entry = m_sensorMap.constFind(id);
    return entry == m_sensorMap.cend() ? QModelIndex()
                                       : index(static_cast<int>(std::distance(m_sensorMap.cbegin(), entry)));
}
