// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CommandHistory.h"

#include <QSettings>

using namespace Qt::StringLiterals;

namespace {
constexpr auto settingsKey = "commandHistory";

bool hasApplicationKey(const QString &command)
{
    return command.contains("_AKEY="_L1, Qt::CaseInsensitive) && !command.endsWith(u'?');
}

void append(QStringList &commands, const QString &command)
{
    if (commands.isEmpty() || commands.constLast() != command) {
        commands.append(command);
    }
    if (commands.size() > CommandHistory::sizeMax) {
        commands.remove(0, commands.size() - CommandHistory::sizeMax);
    }
}
} // namespace

void CommandHistory::load()
{
    if (!m_loaded) {
        m_loaded = true;
        const QStringList stored = QSettings().value(settingsKey).toStringList();
        for (const QString &command : stored) {
            append(m_commands, command);
        }
        m_commands.removeAll(QString());
    }
}

void CommandHistory::add(const QString &command)
{
    if (command.isEmpty()) {
        return;
    }
    load();
    append(m_commands, command);
    m_answer.clear();
    if (!hasApplicationKey(command)) {
        QSettings settings; // read anew, because another window may have added to it
        QStringList stored = settings.value(settingsKey).toStringList();
        append(stored, command);
        settings.setValue(settingsKey, stored);
    }
}

QString CommandHistory::older(const QString &shown)
{
    return step(shown, -1);
}

QString CommandHistory::newer(const QString &shown)
{
    return step(shown, 1);
}

QString CommandHistory::step(const QString &shown, int direction)
{
    load();
    if (m_answer.isEmpty() || shown != m_answer) {
        m_typed = shown;
        m_at = m_commands.size();
    }
    for (qsizetype at = m_at + direction; at >= 0 && at < m_commands.size(); at += direction) {
        if (m_commands.at(at).startsWith(m_typed) && m_commands.at(at) != shown) {
            m_at = at;
            m_answer = m_commands.at(at);
            return m_answer;
        }
    }
    if (direction < 0 || m_at == m_commands.size()) {
        return shown;
    }
    m_at = m_commands.size();
    m_answer = m_typed;
    return m_typed;
}

QString CommandHistory::complete(const QString &typed, const QStringList &words)
{
    QString common;
    for (const QString &word : words) {
        const QString command = "AT+"_L1 + word;
        if (!command.startsWith(typed, Qt::CaseInsensitive)) {
            continue;
        }
        if (common.isEmpty()) {
            common = command;
        }
        while (!command.startsWith(common)) {
            common.chop(1);
        }
    }
    return common.isEmpty() ? typed : common;
}
