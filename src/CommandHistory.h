// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QStringList>
#include <QtQmlIntegration>

/// The commands that a user typed, in this run and in earlier ones. The settings keep the last sizeMax of them under
/// "commandHistory". A command that carries an application key is kept for this run only.
class CommandHistory : public QObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    static constexpr int sizeMax = 100;

    explicit CommandHistory(QObject *parent = nullptr) : QObject(parent) {}

    /// Appends a command, unless it is empty or the last one already, and stores the list.
    Q_INVOKABLE void add(const QString &command);

    /// The next older or newer command that begins with what the user had typed when they began to look. \a shown is
    /// what the field shows: anything but the last answer begins anew. Returns \a shown where there is none older, and
    /// what was typed where there is none newer.
    Q_INVOKABLE QString older(const QString &shown);
    Q_INVOKABLE QString newer(const QString &shown);

    /// What the commands that begin with \a typed have in common, in capitals; \a typed itself if there are none. The
    /// \a words are those of a board, without "AT+".
    Q_INVOKABLE [[nodiscard]] static QString complete(const QString &typed, const QStringList &words);

private:
    QString step(const QString &shown, int direction);
    void load();

    QStringList m_commands; ///< oldest first
    bool m_loaded = false;  // at the first use, so that the start does not wait for it
    QString m_typed;
    QString m_answer;
    qsizetype m_at = 0;
};
