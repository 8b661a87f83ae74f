// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PayloadModel.h"

#include "Assertion.h"

namespace {

constexpr auto c_source = "src/models/PayloadModel";
constexpr uint c_optionBytes = 2;
constexpr uchar c_importantRedundancy = 10;

} // namespace

PayloadModel::PayloadModel(QObject *parent) : QAbstractListModel(parent) {}

uchar PayloadModel::prepassRedundancy(bool important)
{
    return important ? c_importantRedundancy : s_defaultRedundancy;
}

int PayloadModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_payloadList.size());
}

QVariant PayloadModel::data(const QModelIndex &index, int role) const
{
    ZEPGUI_ASSERT(index.row() >= 0 && index.row() < m_payloadList.size(), "Invalid index to access payload model data",
                  c_source);
    const Payload *payload = m_payloadList.at(index.row());
    switch (role) {
    case MessageRole:
        return payload->message;
    case RedundancyRole:
        return int{payload->redundancy};
    case OptionAckRole:
        return payload->options.optionAck;
    case OptionMailRole:
        return payload->options.optionMail;
    case OptionImportantRole:
        return payload->options.optionImportant;
    case TxCountRole:
        return int{payload->txCount};
    case StatusRole:
        return int{payload->status};
    default:
        ZEPGUI_ASSERT(false, "Invalid role value to access payload model data", c_source);
    }
    return {};
}

bool PayloadModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (index.row() < 0 || index.row() >= m_payloadList.size()) {
        return false;
    }
    Payload *payload = m_payloadList.at(index.row());
    bool mustRecheck = false;
    switch (role) {
    case MessageRole:
        payload->message = value.toString().toUpper();
        mustRecheck = true;
        break;
    case RedundancyRole:
        payload->redundancy = static_cast<uchar>(value.toUInt());
        break;
    case OptionAckRole:
        payload->options.optionAck = value.toBool();
        mustRecheck = true;
        break;
    case OptionMailRole:
        payload->options.optionMail = value.toBool();
        mustRecheck = true;
        break;
    case OptionImportantRole:
        payload->options.optionImportant = value.toBool();
        payload->redundancy = prepassRedundancy(payload->options.optionImportant);
        Q_EMIT dataChanged(index, index, {RedundancyRole});
        break;
    case TxCountRole:
        payload->txCount = static_cast<uchar>(value.toUInt());
        break;
    case StatusRole:
        payload->status = static_cast<Payload::Status>(value.toInt());
        mustRecheck = true;
        break;
    default:
        ZEPGUI_ASSERT(false, "Invalid role value to update payload model data", c_source);
    }
    Q_EMIT dataChanged(index, index, {role});
    if (mustRecheck) {
        recheck(index.row(), payload);
    }
    return true;
}

QHash<int, QByteArray> PayloadModel::roleNames() const
{
    return {
        {MessageRole, "message"},       {RedundancyRole, "redundancy"}, {OptionAckRole, "optionAck"},
        {OptionMailRole, "optionMail"}, {TxCountRole, "txCount"},       {OptionImportantRole, "optionImportant"},
        {StatusRole, "status"},
    };
}

void PayloadModel::add(const QString &message, uchar redundancy)
{
    const int row = rowCount();
    beginInsertRows(QModelIndex(), row, row);
    const QString text = message.isEmpty() ? QString::asprintf("%.8d", static_cast<uchar>(row)) : message;
    auto *payload = new Payload(text, redundancy, this);
    m_payloadList.append(payload);
    payload->status = isPayloadValid(payload) ? Payload::NONE : Payload::ERROR;
    endInsertRows();
}

void PayloadModel::remove(uchar index)
{
    beginRemoveRows(QModelIndex(), index, index);
    m_payloadList.removeAt(index);
    endRemoveRows();
}

bool PayloadModel::checkPayload(uchar index) const
{
    return isPayloadValid(m_payloadList.value(index));
}

bool PayloadModel::checkPayload(const QString &message, bool options) const
{
    if (m_allowedSize.isEmpty()) {
        return true;
    }
    if (message.size() % 2 != 0) {
        return false;
    }
    return m_allowedSize.contains(static_cast<uint>(message.size() / 2) + (options ? c_optionBytes : 0));
}

void PayloadModel::setRedundancy(int row, uchar redundancy)
{
    setData(index(row), int{redundancy}, RedundancyRole);
}

void PayloadModel::setTxCount(int row, uchar txCount)
{
    setData(index(row), int{txCount}, TxCountRole);
}

void PayloadModel::setStatus(int row, Payload::Status status)
{
    setData(index(row), int{status}, StatusRole);
}

void PayloadModel::setAllowedSize(const QList<uint> &allowedSize)
{
    m_allowedSize = allowedSize;
    for (int row = 0; row < rowCount(); ++row) {
        recheck(row, m_payloadList.at(row));
    }
}

bool PayloadModel::isPayloadValid(const Payload *payload) const
{
    return payload == nullptr ||
           checkPayload(payload->message, payload->options.optionAck || payload->options.optionMail);
}

void PayloadModel::recheck(int row, Payload *payload)
{
    const bool valid = isPayloadValid(payload);
    payload->status = valid ? Payload::NONE : Payload::ERROR;
    Q_EMIT payloadChecked(static_cast<uchar>(row), valid);
}
