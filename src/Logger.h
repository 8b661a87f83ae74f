// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQmlIntegration>

/// Turns an event of the session into one stamped line of text and publishes it. It keeps no lines: whoever listens
/// does. Also writes a text to a file.
class Logger : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    /// Where a line comes from: the program itself, a module board, a Ranger. The key stands in the line.
    enum Source { APP, ZEP, RNG };
    Q_ENUM(Source)

    /// What a file is to hold.
    enum Content {
        LOGS,
        SECRET, ///< its owner's alone; the process log tells also what could not be opened
    };

    explicit Logger(QObject *parent = nullptr);

    /// Emits logCreated() with the line "[hh:mm:ss:zzz] [SRC] message", trimmed, stamped by the clock of the
    /// interface: UTC plus the offset.
    void log(Source source, const QString &message);
    /// Sets the distance of the interface's clock from UTC, in seconds of either sign.
    void setUtcOffset(qint64 seconds) { m_utcOffsetSeconds = seconds; }
    /// As set by setUtcOffset(), in seconds.
    [[nodiscard]] qint64 utcOffset() const { return m_utcOffsetSeconds; }

    /// Asks every pane to empty itself.
    Q_INVOKABLE void clearLogs();
    /// Puts \a logs in the place of what the file at the URL \a filePath held, whole or not at all; with
    /// \a filterAtCmds only the AT commands in it, one a line, without stamps. A file of logs that cannot be opened is
    /// silently not written; on a full disk the process log says so. In a folder that may not be written, logs go over
    /// what the file held. A SECRET is never filtered, and has its own line ends.
    Q_INVOKABLE void exportLogsToFile(const QString &filePath, const QString &logs, bool filterAtCmds,
                                      Logger::Content content = LOGS);

Q_SIGNALS:
    void logCreated(QString log);
    void logsCleared();

private:
    qint64 m_utcOffsetSeconds = 0;
};
