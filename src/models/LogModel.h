// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QStringList>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <limits>

/// The lines of one log pane, oldest first. A line is kept whole and is part of text() as soon as it is appended; the
/// views are told of new lines in batches, one insertion for all that came within batchInterval, so that their work
/// follows the clock and not the rate of the lines.
///
/// When a batch leads beyond the limit of lines, the oldest tenth is dropped, or several tenths if it was a large one.
/// The first row then says how many lines have been dropped since the last clear(); like any line it is part of text().
class LogModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT

public:
    enum Role { ShownRole = Qt::UserRole + 1 };
    /// A column that stands for the end of any line.
    enum Column { LineEnd = std::numeric_limits<int>::max() };
    Q_ENUM(Column)

    static constexpr int batchInterval = 30; ///< milliseconds, about thirty pictures a second
    static constexpr int shownLength = 2048; ///< characters of a line that a view is given

    static constexpr int defaultLimit = 1'000'000; ///< lines

    /// \a limit is the number of lines that the views are left with at most, 20 or more.
    explicit LogModel(QObject *parent = nullptr, int limit = defaultLimit);

    /// The lines that the views have been told of; those of the batch under way are not counted.
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    /// Role "shown": the line as it can be drawn, plain text. Each character stands at its column in the line, or a
    /// replacement character where drawing it would do harm; a line beyond shownLength ends there in an ellipsis.
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The characters of a published row that a view is given, as they came.
    [[nodiscard]] QStringView beginningOf(int row) const { return QStringView(m_lines.at(row)).left(shownLength); }

    Q_INVOKABLE void append(const QString &line);
    Q_INVOKABLE void clear();
    /// Tells the views of the batch under way now, not at the end of its time.
    Q_INVOKABLE void publish();

    /// All lines, whole and joined by line feeds; empty for no lines.
    [[nodiscard]] Q_INVOKABLE QString text() const;
    /// The text from \a firstColumn of \a firstRow up to, not including, \a lastColumn of \a lastRow, joined by line
    /// feeds. Columns count shown characters; one behind the ellipsis stands for the end of the whole line. Rows
    /// outside the list are left out.
    [[nodiscard]] Q_INVOKABLE QString textBetween(int firstRow, int firstColumn, int lastRow, int lastColumn) const;
    /// Puts textBetween() on the clipboard; an empty text leaves the clipboard as it is.
    Q_INVOKABLE void copyBetween(int firstRow, int firstColumn, int lastRow, int lastColumn) const;
    /// Puts text() on the clipboard.
    Q_INVOKABLE void copyAll() const;

Q_SIGNALS:
    /// The views have taken a batch of new lines in.
    void published();
    /// The first \a count rows have given way to one, which says that older lines are missing. Emitted when the model
    /// and the views that follow it have taken the change in; a row of number n is now n - count + 1.
    void dropped(int count);

private:
    void dropOldest();

    int m_limit;
    QStringList m_lines;
    int m_droppedCount = 0; ///< lines; the first row says so unless it is 0
    int m_publishedCount = 0;
    QTimer m_batchTimer;
};
