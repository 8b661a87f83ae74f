// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "LogModel.h"

#include <QList>
#include <QStringMatcher>
#include <QTimer>

/// Finds the rows of a log that contain a text, in slices of sliceTime, so that the window stays alive however long the
/// log is. New rows are looked through as they come. Only what a view shows of a line is looked through, that is its
/// first LogModel::shownLength characters.
class LogFinder : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(LogModel *model READ model WRITE setModel NOTIFY modelChanged)
    Q_PROPERTY(QString pattern READ pattern WRITE setPattern NOTIFY patternChanged)
    Q_PROPERTY(bool caseSensitive READ isCaseSensitive WRITE setCaseSensitive NOTIFY patternChanged)
    Q_PROPERTY(int count READ count NOTIFY hitsChanged)
    Q_PROPERTY(bool searching READ isSearching NOTIFY hitsChanged)
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentChanged)
    Q_PROPERTY(int currentNumber READ currentNumber NOTIFY currentChanged)

public:
    static constexpr int sliceTime = 5; ///< milliseconds

    explicit LogFinder(QObject *parent = nullptr);

    [[nodiscard]] LogModel *model() const { return m_model; }
    void setModel(LogModel *model);
    /// An empty one finds nothing.
    [[nodiscard]] QString pattern() const { return m_matcher.pattern(); }
    void setPattern(const QString &pattern);
    [[nodiscard]] bool isCaseSensitive() const { return m_matcher.caseSensitivity() == Qt::CaseSensitive; }
    void setCaseSensitive(bool caseSensitive);

    /// The rows found so far.
    [[nodiscard]] int count() const { return static_cast<int>(m_rows.size()); }
    /// Whether there are rows that have not been looked through.
    [[nodiscard]] bool isSearching() const { return m_timer.isActive(); }
    /// The row of the hit that the user looks at; -1 is none.
    [[nodiscard]] int currentRow() const { return m_current < 0 ? -1 : m_rows.at(m_current); }
    /// Its number among the hits, from 1; 0 is none.
    [[nodiscard]] int currentNumber() const { return static_cast<int>(m_current) + 1; }

    /// Where a new pattern is looked for: its first hit becomes the one at or behind \a row, or else the last one.
    Q_INVOKABLE void setOrigin(int row) { m_origin = row; }
    /// To the hit behind or before the present one, beyond the last to the first and beyond the first to the last.
    Q_INVOKABLE void next() { step(1); }
    Q_INVOKABLE void previous() { step(-1); }
    /// The columns at which the pattern begins in \a line. The hits of a line do not overlap.
    Q_INVOKABLE [[nodiscard]] QList<int> columnsIn(const QString &line) const;

Q_SIGNALS:
    void modelChanged();
    void patternChanged();
    void hitsChanged();
    /// Also when the user returns to the same hit.
    void currentChanged();

private:
    void restart();
    void lookThrough();
    void onDropped(int count);
    void step(int by);
    void setCurrent(qsizetype current);

    LogModel *m_model = nullptr;
    QStringMatcher m_matcher{QString(), Qt::CaseInsensitive};
    QTimer m_timer;
    int m_nextRow = 0;
    QList<int> m_rows; ///< in ascending order
    qsizetype m_current = -1;
    int m_origin = 0;
    bool m_arrived = true; ///< the first hit of the pattern has been chosen, or the user has chosen one
};
