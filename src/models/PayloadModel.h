// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QtQmlIntegration>

#include "Payload.h"

/// The list of payloads. A payload is well formed when its length in bytes, with two more when an acknowledgement or
/// a downlink is asked for, is one that the present modulation allows; the model checks on every change of what
/// matters and marks the bad rows.
///
/// The stored status is always the verdict of the last check, NONE or ERROR. A state of the sequence that is written
/// reaches the views with the change notification and is replaced right after it, without another one: whoever reads
/// later gets the verdict.
class PayloadModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role : int {
        MessageRole = Qt::UserRole + 1,
        RedundancyRole,
        OptionAckRole,
        OptionMailRole,
        OptionImportantRole,
        TxCountRole,
        StatusRole,
    };

    /// Redundancy of a payload in the prepass profiles, with no option on.
    static constexpr uchar s_defaultRedundancy = 4;

    explicit PayloadModel(QObject *parent = nullptr);

    /// Redundancy of an \a important payload, or of another one, in the prepass profiles.
    [[nodiscard]] static uchar prepassRedundancy(bool important);

    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// A row or a role that does not exist fails an assertion.
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    /// False for a row that does not exist; a role that does not exist fails an assertion.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Appends a row. An empty \a message stands for the row number in eight decimal digits.
    void add(const QString &message, uchar redundancy);
    /// Takes a row out; its item lives as long as the model. The row must exist.
    Q_INVOKABLE void remove(uchar index);

    /// Whether the row is well formed; true past the end.
    Q_INVOKABLE bool checkPayload(uchar index) const;
    /// Whether \a message has an allowed length, \a options telling that two option bytes come on top. Whether its
    /// characters are hexadecimal is the view's matter. Anything passes while no length is known.
    Q_INVOKABLE bool checkPayload(const QString &message, bool options) const;

    /// Fields of a row that must exist.
    [[nodiscard]] QString getMessage(uchar index) const { return m_payloadList.at(index)->message; }
    [[nodiscard]] uchar getRedundancy(uchar index) const { return m_payloadList.at(index)->redundancy; }
    [[nodiscard]] Payload::Options getOptions(uchar index) const { return m_payloadList.at(index)->options; }
    /// The verdict of the last check, never a state of the sequence.
    [[nodiscard]] Payload::Status getStatus(uchar index) const { return m_payloadList.at(index)->status; }

    /// Writes through setData(). The row is an int so that a loop over a list of any length ends.
    void setRedundancy(int row, uchar redundancy);
    void setTxCount(int row, uchar txCount);
    void setStatus(int row, Payload::Status status);

public Q_SLOTS:
    /// Takes the lengths that are allowed now, in bytes, and checks every row anew. An empty list allows anything.
    void setAllowedSize(const QList<uint> &allowedSize);

Q_SIGNALS:
    /// A row was checked; \a status is true for a well-formed payload.
    void payloadChecked(uchar index, bool status);

private:
    [[nodiscard]] bool isPayloadValid(const Payload *payload) const;
    void recheck(int row, Payload *payload);

    QList<Payload *> m_payloadList;
    QList<uint> m_allowedSize;
};
