// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SatelliteAopModel.h"

#include <algorithm>

#include "Assertion.h"

namespace {

constexpr auto c_source = "src/models/SatelliteAopModel";
constexpr QLatin1String c_unknownName("NA");

bool sameIdent(QChar left, QChar right)
{
    return left.toCaseFolded() == right.toCaseFolded();
}

} // namespace

SatelliteAopModel::SatelliteAopModel(QObject *parent) : QAbstractListModel(parent) {}

int SatelliteAopModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_satelliteAopList.size());
}

QVariant SatelliteAopModel::data(const QModelIndex &index, int role) const
{
    ZEPGUI_ASSERT(index.row() >= 0 && index.row() < m_satelliteAopList.count(),
                  "Invalid index to access satellite AOP model data", c_source);
    const SatelliteAop *satellite = m_satelliteAopList.at(index.row());
    switch (role) {
    case SatelliteNameRole:
        return satellite->satelliteName;
    case DownlinkStatusRole:
        return satellite->downlinkStatusText();
    case UplinkStatusRole:
        return satellite->uplinkStatusText();
    case AopDataRole:
        return satellite->aopTooltipHtml();
    default:
        ZEPGUI_ASSERT(false, "Invalid role value to access satellite AOP model data", c_source);
    }
    return {};
}

QHash<int, QByteArray> SatelliteAopModel::roleNames() const
{
    return {
        {SatelliteNameRole, "satelliteName"},
        {DownlinkStatusRole, "downlinkStatus"},
        {UplinkStatusRole, "uplinkStatus"},
        {AopDataRole, "aopData"},
    };
}

QString SatelliteAopModel::creationDate() const
{
    return m_creationDate.toUTC().toString(Qt::TextDate) + QStringLiteral(" (UTC)");
}

QString SatelliteAopModel::getDownlinkCapability(const QString &satelliteName) const
{
    for (const SatelliteAop *satellite : m_satelliteAopList) {
        if (satellite->satelliteName == satelliteName) {
            return satellite->downlinkStatusText().contains(QStringLiteral("OFF")) ? QStringLiteral("OFF")
                                                                                   : QStringLiteral("ON");
        }
    }
    return QStringLiteral("NA");
}

QString SatelliteAopModel::satelliteNameForIdent(QChar ident) const
{
    for (const SatelliteAop *satellite : m_satelliteAopList) {
        if (sameIdent(satellite->ident, ident)) {
            return satellite->satelliteName;
        }
    }
    return c_unknownName;
}

bool SatelliteAopModel::isModuleSatellite(QChar ident) const
{
    return std::any_of(m_moduleSatelliteIdents.cbegin(), m_moduleSatelliteIdents.cend(),
                       [ident](QChar known) { return sameIdent(known, ident); });
}

SatelliteAop *SatelliteAopModel::findByIdent(QChar ident) const
{
    return m_satelliteAopList.value(m_rowOfIdent.value(ident, -1));
}

void SatelliteAopModel::updateOrAddSatellite(QChar ident, const QDateTime &date, double semiMajorAxis,
                                             double inclination, double ascendantNodeLongitude,
                                             double ascendantNodeDrift, double orbitalPeriod, double semiMajorAxisDrift,
                                             const QString &satelliteName, SatelliteAop::DownlinkStatus downlink,
                                             SatelliteAop::UplinkStatus uplink)
{
    const bool fromModule = satelliteName == c_unknownName;
    if (fromModule && !m_moduleSatelliteIdents.contains(ident)) {
        m_moduleSatelliteIdents.append(ident);
    }

    SatelliteAop *satellite = findByIdent(ident);
    const bool isNew = satellite == nullptr;
    if (isNew) {
        satellite = new SatelliteAop(this);
        satellite->ident = ident;
    }
    if (isNew || !fromModule) {
        satellite->satelliteName = satelliteName;
    }
    if (isNew || (downlink != SatelliteAop::DNLK_NA && uplink != SatelliteAop::UPLK_NA)) {
        satellite->downlinkStatus = downlink;
        satellite->uplinkStatus = uplink;
    }
    satellite->date = date;
    satellite->semiMajorAxis = semiMajorAxis;
    satellite->inclination = inclination;
    satellite->ascendantNodeLongitude = ascendantNodeLongitude;
    satellite->ascendantNodeDrift = ascendantNodeDrift;
    satellite->orbitalPeriod = orbitalPeriod;
    satellite->semiMajorAxisDrift = semiMajorAxisDrift;

    if (isNew) {
        const int row = rowCount();
        beginInsertRows(QModelIndex(), row, row);
        m_satelliteAopList.append(satellite);
        m_rowOfIdent.insert(ident, row);
        endInsertRows();
    }
    const QModelIndex changed = index(m_rowOfIdent.value(ident));
    static const QList<int> roles{SatelliteAopModel::SatelliteNameRole, SatelliteAopModel::DownlinkStatusRole,
                                  SatelliteAopModel::UplinkStatusRole, SatelliteAopModel::AopDataRole};
    Q_EMIT dataChanged(changed, changed, roles);
}

void SatelliteAopModel::clear()
{
    beginRemoveRows(QModelIndex(), 0, rowCount());
    m_satelliteAopList.clear();
    m_rowOfIdent.clear();
    endRemoveRows();
}
