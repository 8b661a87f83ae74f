// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QDateTime>
#include <QList>
#include <QtQmlIntegration>

class Prepass;
class QIODevice;

/// A list of satellite passes: the table that the user imports, or the next pass that the module computed.
///
/// A row that is taken out is only forgotten: its item lives as long as the model. Whoever names a row by a byte
/// reaches the first 256 rows only.
class PrepassModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role : int {
        SatelliteNameRole = Qt::UserRole + 1,
        StartUtcRole,        ///< Text "ddd MMM d, hh:mm:ss"; empty for an unknown start
        DurationRole,        ///< Text "hh:mm:ss"; empty for an unknown duration
        MiddleElevationRole, ///< Text with two decimals, degrees
        IsActiveRole,
    };

    explicit PrepassModel(QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// A row or a role that does not exist fails an assertion.
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    /// False for a row that does not exist. Only IsActiveRole is written; any other role is notified unchanged.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Appends a row; the fields are those of Prepass.
    void addPrepass(const QString &satelliteName, const QDateTime &startUTC, const QTime &duration,
                    double middleElevation, bool isActive);
    /// Empties the list. The notification names one row more than there was, also for an empty list.
    void clear();
    /// Takes a row out. The row must exist.
    void removeAt(uchar index);

    /// Fields of a row that must exist.
    Q_INVOKABLE bool getIsActive(qulonglong index) const;
    [[nodiscard]] QDateTime getStartUtc(qulonglong index) const;
    [[nodiscard]] QTime getDuration(qulonglong index) const;
    /// Start plus duration, an unknown duration counting as none; invalid for an unknown start.
    [[nodiscard]] QDateTime getEndUtc(qulonglong index) const;
    /// Writes through setData().
    void setIsActive(uchar index, bool active);

    /// Replaces the list by the passes of the table \a file that end after \a now (UTC), sorted by start. \a file is
    /// open for reading as text: UTF-8, nine fields a line separated by "," or ";", a header in the first line.
    ///
    /// False, with a critical message on the process log, when a line is not of that form. The list is untouched up to
    /// a correct header, and holds the rows read so far, unsorted, after it. An empty file is success and leaves the
    /// list as it was. The sort makes no notification: a view must not have drawn the rows before the call ends.
    [[nodiscard]] bool loadFromCsv(QIODevice &file, const QDateTime &now);

private:
    QList<Prepass *> m_prepassList;
};
