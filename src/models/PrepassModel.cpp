// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PrepassModel.h"

#include "Assertion.h"
#include "Prepass.h"

namespace {

constexpr auto c_source = "src/models/PrepassModel";
constexpr int c_elevationDecimals = 2;

} // namespace

PrepassModel::PrepassModel(QObject *parent) : QAbstractListModel(parent) {}

int PrepassModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_prepassList.size());
}

QVariant PrepassModel::data(const QModelIndex &index, int role) const
{
    ZEPGUI_ASSERT(index.row() >= 0 && index.row() < m_prepassList.count(), "Invalid index to access prepass model data",
                  c_source);
    const Prepass *prepass = m_prepassList.at(index.row());
    switch (role) {
    case SatelliteNameRole:
        return prepass->satelliteName;
    case StartUtcRole:
        return prepass->startUTC.toString(QStringLiteral("ddd MMM d, hh:mm:ss"));
    case DurationRole:
        return prepass->duration.toString(QStringLiteral("hh:mm:ss"));
    case MiddleElevationRole:
        return QString::number(prepass->middleElevation, 'f', c_elevationDecimals);
    case IsActiveRole:
        return prepass->isActive;
    default:
        ZEPGUI_ASSERT(false, "Invalid role value to access prepass model data", c_source);
    }
    return {};
}

bool PrepassModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (index.row() < 0 || index.row() >= m_prepassList.size()) {
        return false;
    }
    if (role == IsActiveRole) {
        m_prepassList.at(index.row())->isActive = value.toBool();
    }
    Q_EMIT dataChanged(index, index, {role});
    return true;
}

QHash<int, QByteArray> PrepassModel::roleNames() const
{
    return {
        {SatelliteNameRole, "satelliteName"},     {StartUtcRole, "startUTC"}, {DurationRole, "duration"},
        {MiddleElevationRole, "middleElevation"}, {IsActiveRole, "isActive"},
    };
}

void PrepassModel::addPrepass(const QString &satelliteName, const QDateTime &startUTC, const QTime &duration,
                              double middleElevation, bool isActive)
{
    auto *prepass = new Prepass(this);
    prepass->satelliteName = satelliteName;
    prepass->startUTC = startUTC;
    prepass->duration = duration;
    prepass->middleElevation = middleElevation;
    prepass->isActive = isActive;

    const int row = rowCount();
    beginInsertRows(QModelIndex(), row, row);
    m_prepassList.append(prepass);
    endInsertRows();
}

void PrepassModel::clear()
{
    beginRemoveRows(QModelIndex(), 0, rowCount());
    m_prepassList.clear();
    endRemoveRows();
}

void PrepassModel::removeAt(uchar index)
{
    beginRemoveRows(QModelIndex(), index, index);
    m_prepassList.removeAt(index);
    endRemoveRows();
}

bool PrepassModel::getIsActive(qulonglong index) const
{
    return m_prepassList.at(static_cast<qsizetype>(index))->isActive;
}

QDateTime PrepassModel::getStartUtc(qulonglong index) const
{
    return m_prepassList.at(static_cast<qsizetype>(index))->startUTC;
}

QTime PrepassModel::getDuration(qulonglong index) const
{
    return m_prepassList.at(static_cast<qsizetype>(index))->duration;
}

QDateTime PrepassModel::getEndUtc(qulonglong index) const
{
    return getStartUtc(index).addMSecs(getDuration(index).msecsSinceStartOfDay());
}

void PrepassModel::setIsActive(uchar index, bool active)
{
    setData(this->index(index), active, IsActiveRole);
}
