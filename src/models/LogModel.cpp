// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LogModel.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace {

constexpr QChar ellipsis(0x2026);

// Characters that a text document takes for structure, that turn the reading direction of what follows, or that have
// no picture. A line feed is drawn as what it is.
bool isHarmful(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
        return character != QLatin1Char('\n') && character != QLatin1Char('\t');
    case QChar::Other_Format:
    case QChar::Other_NotAssigned: // U+FDD0 and U+FDD1 open and close a frame in a text document
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return character == QChar::ObjectReplacementCharacter;
    }
}

QString drawable(const QString &line)
{
    QString shown = line.size() > LogModel::shownLength ? line.left(LogModel::shownLength) + ellipsis : line;
    if (std::any_of(shown.cbegin(), shown.cend(), isHarmful)) {
        std::replace_if(shown.begin(), shown.end(), isHarmful, QChar(QChar::ReplacementCharacter));
    }
    return shown;
}

qsizetype columnInLine(int column, const QString &line)
{
    return column > LogModel::shownLength ? line.size() : std::min<qsizetype>(column, line.size());
}

void toClipboard(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

} // namespace

LogModel::LogModel(QObject *parent, int limit) : QAbstractListModel(parent), m_limit(limit)
{
    m_batchTimer.setSingleShot(true);
    m_batchTimer.setInterval(batchInterval);
    connect(&m_batchTimer, &QTimer::timeout, this, &LogModel::publish);
}

int LogModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_publishedCount;
}

QVariant LogModel::data(const QModelIndex &index, int role) const
{
    if (role != ShownRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    return drawable(m_lines.at(index.row()));
}

QHash<int, QByteArray> LogModel::roleNames() const
{
    return {{ShownRole, "shown"}};
}

void LogModel::append(const QString &line)
{
    m_lines.append(line);
    // Not started anew by each line: under a steady stream it would never run out.
    if (!m_batchTimer.isActive()) {
        m_batchTimer.start();
    }
}

void LogModel::clear()
{
    m_batchTimer.stop();
    beginResetModel();
    m_lines = QStringList(); // clear() would keep the room of a long log for the life of the process
    m_publishedCount = 0;
    m_droppedCount = 0;
    endResetModel();
}

void LogModel::publish()
{
    m_batchTimer.stop();
    const int count = static_cast<int>(m_lines.size());
    if (count == m_publishedCount) {
        return;
    }
    beginInsertRows({}, m_publishedCount, count - 1);
    m_publishedCount = count;
    endInsertRows();
    if (count > m_limit) {
        dropOldest();
    }
    Q_EMIT published();
}

void LogModel::dropOldest()
{
    const int tenth = m_limit / 10;
    const int lines = ((m_publishedCount - m_limit) / tenth + 1) * tenth; // one spare, for the row that says so
    const int rows = lines + (m_droppedCount > 0 ? 1 : 0);
    m_droppedCount += lines;
    // The last of them becomes the row that says so: what is removed is the front of the list, which moves nothing.
    beginRemoveRows({}, 0, rows - 2);
    m_lines.erase(m_lines.cbegin(), m_lines.cbegin() + (rows - 1));
    m_publishedCount -= rows - 1;
    endRemoveRows();
    m_lines.first() = QStringLiteral("%1 older lines were dropped here; the journal has them unless it is switched off")
                          .arg(m_droppedCount);
    Q_EMIT dataChanged(index(0), index(0), {ShownRole});
    Q_EMIT dropped(rows);
}

QString LogModel::text() const
{
    return m_lines.join(QLatin1Char('\n'));
}

QString LogModel::textBetween(int firstRow, int firstColumn, int lastRow, int lastColumn) const
{
    QStringList parts;
    const int end = std::min(lastRow, static_cast<int>(m_lines.size()) - 1);
    for (int row = std::max(firstRow, 0); row <= end; ++row) {
        const QString &line = m_lines.at(row);
        const qsizetype from = row == firstRow ? columnInLine(firstColumn, line) : 0;
        const qsizetype to = row == lastRow ? columnInLine(lastColumn, line) : line.size();
        parts.append(line.mid(from, to - from));
    }
    return parts.join(QLatin1Char('\n'));
}

void LogModel::copyBetween(int firstRow, int firstColumn, int lastRow, int lastColumn) const
{
    const QString text = textBetween(firstRow, firstColumn, lastRow, lastColumn);
    if (!text.isEmpty()) {
        toClipboard(text);
    }
}

void LogModel::copyAll() const
{
    if (!m_lines.isEmpty()) {
        toClipboard(text());
    }
}
