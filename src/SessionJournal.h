// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QDate>
#include <QObject>
#include <QUrl>
#include <QtQmlIntegration>

class JournalWriter;
class ZepManager;

/// Keeps the log of each session in a file of its own, also when the program crashes, and reports at the next start
/// which sessions had no regular end. The files are in the folder "journal" of the user's application data;
/// "Journal/enabled=false" in the config.ini of the working directory disables all of it.
///
/// A file begins with the attempt to connect from which the session came; a failed attempt leaves none. Lines of the
/// journal's own begin with "#". Since the lines of a log have the time alone, such a line gives the date whenever it
/// changes, and the distance of the interface's clock from UTC.
class SessionJournal : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QString uncleanFiles READ uncleanFiles CONSTANT)
    Q_PROPERTY(QUrl folder READ folder CONSTANT)

public:
    /// Records the sessions of \a manager, whose logger must exist.
    explicit SessionJournal(ZepManager *manager);
    /// Ends the session's file regularly. Waits up to 2 s for the disk.
    ~SessionJournal() override;

    /// The path of each session that had no regular end and has not been reported before, one a line, oldest first.
    [[nodiscard]] QString uncleanFiles() const { return m_uncleanFiles; }
    [[nodiscard]] QUrl folder() const { return QUrl::fromLocalFile(m_folder); }

    /// Appends \a reason and waits up to 2 s until the disk has all of the session: the process is about to end.
    void keepReason(const QByteArray &reason);

private:
    void begin();
    void end();
    void record(const QString &line);

    ZepManager *m_manager;
    QString m_folder;
    QString m_uncleanFiles;
    JournalWriter *m_writer = nullptr; ///< null when the journal is disabled
    QDate m_date;                      ///< of the last line, by the interface's clock
    qint64 m_utcOffset = 0;            ///< of that clock then, in seconds
    QByteArray m_dateLine;
};
