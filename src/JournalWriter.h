// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QFile>
#include <QLockFile>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <memory>

/// Writes the files of the journal in a thread of its own, because a disk may take seconds for a request. Text is on
/// the disk half a second after it was appended, plus the time that the disk takes.
///
/// The first file of a session is "SESSION.log". Beyond 25 MiB the session continues in "SESSION_0002.log", and so on.
/// Whenever a file is created, the oldest ones are removed until 20 sessions and 100 MiB remain. "SESSION.lock" is
/// locked as long as the session lasts; no file of a session of another process is removed meanwhile.
///
/// A failure of the disk is one critical message on the process log per session. Text that could not be written is kept
/// and written later; beyond 16 MiB more is dropped, and the journal has a line with the number of bytes.
class JournalWriter : public QObject
{
    Q_OBJECT

public:
    /// Creates nothing in \a folder before there is text of a session.
    explicit JournalWriter(QString folder);

    // These return at once. The caller's thread is the main thread.

    /// Opens the session \a session. Its files begin with \a header, then follows what was appended since the last
    /// session.
    void begin(const QString &session, const QByteArray &header);
    /// Appends \a line, with the line \a date before it when that is another one than before and in each new file.
    void append(const QByteArray &date, const QByteArray &line);
    /// Ends the session regularly. Without a session, discards what was appended.
    void end();

    /// Waits until the disk has all that was appended, but no longer than \a limit.
    void flush(std::chrono::milliseconds limit);
    /// As flush(), and ends the thread. False if it did not end: the object must then not be deleted.
    [[nodiscard]] bool stop(std::chrono::milliseconds limit);

    /// The last file of each session in \a folder that had no regular end and is not in progress, oldest first. Each is
    /// returned once.
    [[nodiscard]] static QStringList takeUncleanEnds(const QString &folder);

private:
    void add(const QByteArray &date, const QByteArray &line);
    void write();
    void close();
    /// The reason of a failure; empty on success.
    [[nodiscard]] QString createFile();
    void removeOldest() const;
    void onFailed(const QString &reason);

    std::unique_ptr<QThread> m_thread;
    std::atomic<qint64> m_backlog = 0; ///< bytes that were appended and are neither written nor discarded
    qint64 m_dropped = 0;              ///< bytes; belongs to the main thread

    // The rest belongs to the writer's thread.
    const QString m_folder;
    QTimer m_timer{this};
    QString m_session; ///< empty without one
    QByteArray m_header;
    QByteArray m_date; ///< the last line of a date
    QByteArray m_pending;
    QFile m_file;
    int m_part = 0; ///< number of the file within the session, from 1
    std::unique_ptr<QLockFile> m_lock;
    bool m_hasComplained = false; ///< in this session
};
