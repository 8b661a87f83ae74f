// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LogFinder.h"

#include <QElapsedTimer>

#include <algorithm>

namespace {
constexpr int rowsBetweenLooksAtTheClock = 64;
} // namespace

LogFinder::LogFinder(QObject *parent) : QObject(parent)
{
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &LogFinder::lookThrough);
}

void LogFinder::setModel(LogModel *model)
{
    if (m_model != nullptr) {
        m_model->disconnect(this);
    }
    m_model = model;
    if (m_model != nullptr) {
        connect(m_model, &LogModel::published, this, [this] {
            if (!pattern().isEmpty()) {
                m_timer.start();
            }
        });
        connect(m_model, &LogModel::dropped, this, &LogFinder::onDropped);
        connect(m_model, &LogModel::modelReset, this, &LogFinder::restart);
        connect(m_model, &QObject::destroyed, this, [this] { setModel(nullptr); });
    }
    Q_EMIT modelChanged();
    restart();
}

void LogFinder::setPattern(const QString &pattern)
{
    if (pattern != m_matcher.pattern()) {
        m_matcher.setPattern(pattern);
        Q_EMIT patternChanged();
        restart();
    }
}

void LogFinder::setCaseSensitive(bool caseSensitive)
{
    if (caseSensitive != isCaseSensitive()) {
        m_matcher.setCaseSensitivity(caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
        Q_EMIT patternChanged();
        restart();
    }
}

void LogFinder::restart()
{
    m_timer.stop();
    m_rows.clear();
    m_nextRow = 0;
    m_arrived = false;
    if (m_model != nullptr && !pattern().isEmpty()) {
        m_timer.start();
    }
    setCurrent(-1);
    Q_EMIT hitsChanged();
}

void LogFinder::lookThrough()
{
    QElapsedTimer clock;
    clock.start();
    const int end = m_model == nullptr ? 0 : m_model->rowCount();
    while (m_nextRow < end && clock.elapsed() < sliceTime) {
        const int sliceEnd = std::min(end, m_nextRow + rowsBetweenLooksAtTheClock);
        for (; m_nextRow < sliceEnd; ++m_nextRow) {
            if (m_matcher.indexIn(m_model->beginningOf(m_nextRow)) >= 0) {
                m_rows.append(m_nextRow);
            }
        }
    }
    if (m_nextRow >= end) {
        m_timer.stop();
    }
    if (!m_arrived && !m_rows.isEmpty() && (m_rows.constLast() >= m_origin || m_nextRow >= end)) {
        const auto hit = std::lower_bound(m_rows.cbegin(), m_rows.cend(), m_origin);
        m_arrived = true;
        setCurrent(std::min<qsizetype>(hit - m_rows.cbegin(), m_rows.size() - 1));
    }
    Q_EMIT hitsChanged();
}

void LogFinder::onDropped(int count)
{
    const auto firstKept = std::lower_bound(m_rows.cbegin(), m_rows.cend(), count);
    const qsizetype lost = firstKept - m_rows.cbegin();
    m_rows.erase(m_rows.cbegin(), firstKept);
    for (int &row : m_rows) {
        row -= count - 1;
    }
    m_nextRow = std::max(m_nextRow - (count - 1), 1); // the row that says what was dropped is no hit
    m_origin = std::max(m_origin - (count - 1), 0);
    m_current = m_current < lost ? -1 : m_current - lost;
    Q_EMIT currentChanged();
    Q_EMIT hitsChanged();
}

void LogFinder::step(int by)
{
    const qsizetype count = m_rows.size();
    if (count == 0) {
        return;
    }
    m_arrived = true;
    if (m_current < 0) {
        const auto hit = std::lower_bound(m_rows.cbegin(), m_rows.cend(), m_origin) - m_rows.cbegin();
        setCurrent(by > 0 ? hit % count : (hit + count - 1) % count);
    } else {
        setCurrent((m_current + by + count) % count);
    }
}

void LogFinder::setCurrent(qsizetype current)
{
    m_current = current;
    Q_EMIT currentChanged();
}

QList<int> LogFinder::columnsIn(const QString &line) const
{
    QList<int> columns;
    const qsizetype length = pattern().size();
    if (length > 0) {
        for (qsizetype at = m_matcher.indexIn(line); at >= 0; at = m_matcher.indexIn(line, at + length)) {
            columns.append(static_cast<int>(at));
        }
    }
    return columns;
}
