// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QtQmlIntegration>

#include "SatelliteAop.h"

/// The satellites known to the program, in the order in which they were first seen: merged from the web service's
/// document and from what the module reported of itself. A satellite is never taken out, and its bulletin is the one
/// that was heard last, whoever sent it.
class SatelliteAopModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QString creationDate READ creationDate NOTIFY creationDateChanged)

public:
    enum Role : int {
        SatelliteNameRole = Qt::UserRole + 1,
        DownlinkStatusRole, ///< Text
        UplinkStatusRole,   ///< Text
        AopDataRole,        ///< The bulletin as rich text
    };

    explicit SatelliteAopModel(QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// A row or a role that does not exist fails an assertion.
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Date of the last accepted document, as text for the user.
    [[nodiscard]] QString creationDate() const;
    /// "ON" or "OFF"; "NA" for a name that nobody bears. A downlink that is not known reads "ON".
    Q_INVOKABLE QString getDownlinkCapability(const QString &satelliteName) const;

    /// "NA" if there is no such satellite. The case does not matter.
    [[nodiscard]] QString satelliteNameForIdent(QChar ident) const;
    /// Whether the module itself reported this satellite. The case does not matter.
    [[nodiscard]] bool isModuleSatellite(QChar ident) const;
    /// The satellite of a row that must exist.
    [[nodiscard]] SatelliteAop *satelliteAt(uchar index) const { return m_satelliteAopList.at(index); }
    /// Null if there is none with exactly this ident.
    [[nodiscard]] SatelliteAop *findByIdent(QChar ident) const;
    /// All rows; a satellite lives as long as the model.
    [[nodiscard]] QList<SatelliteAop *> satellites() const { return m_satelliteAopList; }

    /// Merges one satellite. The name "NA" tells that the module speaks: it never takes a name back. Statuses count
    /// only if both are known; the bulletin always does.
    void updateOrAddSatellite(QChar ident, const QDateTime &date, double semiMajorAxis, double inclination,
                              double ascendantNodeLongitude, double ascendantNodeDrift, double orbitalPeriod,
                              double semiMajorAxisDrift, const QString &satelliteName,
                              SatelliteAop::DownlinkStatus downlink, SatelliteAop::UplinkStatus uplink);

    /// Merges the document \a data of the web service (SatelliteAopModelJson.cpp tells its form). False, with a
    /// critical message on the process log and nothing changed, if it is none. Inside it whatever cannot be read is
    /// zero or empty, and a satellite without an ident is skipped with a critical message.
    [[nodiscard]] bool loadAopJson(const QByteArray &data);

    /// Empties the list. The notification names one row more than there was, also for an empty list.
    void clear();

Q_SIGNALS:
    void creationDateChanged();

private:
    QList<SatelliteAop *> m_satelliteAopList;
    QList<QChar> m_moduleSatelliteIdents;
    QDateTime m_creationDate;
    QHash<QChar, int> m_rowOfIdent; // a search through the list would make a merge quadratic
};
