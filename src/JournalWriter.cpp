// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "JournalWriter.h"

#include "DiskSync.h"
#include "ProcessLog.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSemaphore>
#include <QSet>
#include <QThread>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr auto collectingTime = 500ms; // one write serves all lines of it
constexpr auto retryTime = 2s;         // after a failure
constexpr qint64 mebibyte = 1 << 20;
constexpr qint64 backlogMax = 16 * mebibyte;
constexpr qint64 partSize = 25 * mebibyte;
constexpr qint64 folderSize = 100 * mebibyte;
constexpr int keptSessions = 20;
constexpr auto owner = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr auto ending = ".log"_L1;
constexpr auto lockEnding = ".lock"_L1;
} // namespace

JournalWriter::JournalWriter(QString folder) : m_thread(std::make_unique<QThread>()), m_folder(std::move(folder))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &JournalWriter::write);
    moveToThread(m_thread.get());
    m_thread->start();
}

void JournalWriter::begin(const QString &session, const QByteArray &header)
{
    QMetaObject::invokeMethod(this, [=, this] {
        close();
        m_session = session;
        m_header = header;
        m_timer.start(collectingTime); // what has been appended may be all that there is room for
    });
}

void JournalWriter::append(const QByteArray &date, const QByteArray &line)
{
    if (m_backlog + line.size() > backlogMax) {
        m_dropped += line.size();
        return;
    }
    QByteArray text = line;
    if (m_dropped > 0) {
        text.prepend("# " + QByteArray::number(std::exchange(m_dropped, 0)) + " bytes are missing here\n");
    }
    m_backlog += text.size();
    QMetaObject::invokeMethod(this, [=, this] { add(date, text); });
}

void JournalWriter::end()
{
    m_dropped = 0; // the next session misses nothing
    QMetaObject::invokeMethod(this, [this] {
        write();
        close();
        m_backlog -= m_pending.size();
        m_pending.clear();
        m_date.clear();
    });
}

void JournalWriter::flush(std::chrono::milliseconds limit)
{
    const auto isDone = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(this, [=, this] {
        write();
        isDone->release();
    });
    (void)isDone->tryAcquire(1, static_cast<int>(limit.count()));
}

bool JournalWriter::stop(std::chrono::milliseconds limit)
{
    QMetaObject::invokeMethod(this, [this] {
        write();
        m_thread->quit();
    });
    return m_thread->wait(QDeadlineTimer(limit));
}

void JournalWriter::add(const QByteArray &date, const QByteArray &line)
{
    if (m_file.isOpen() && m_file.pos() + m_pending.size() + date.size() + line.size() > partSize) {
        write();
        m_file.close();
        m_date.clear();
    }
    if (date != m_date) {
        m_date = date;
        m_pending += date;
        m_backlog += date.size();
    }
    m_pending += line;
    if (!m_timer.isActive()) {
        m_timer.start(collectingTime);
    }
}

void JournalWriter::write()
{
    m_timer.stop();
    if (m_session.isEmpty() || m_pending.isEmpty()) {
        return;
    }
    if (!m_file.isOpen()) {
        if (const QString reason = createFile(); !reason.isEmpty()) {
            onFailed(reason);
            return;
        }
    }
    // A disk that gets full takes a part first, and gives the reason with the next one.
    for (qint64 written = 1; written > 0 && !m_pending.isEmpty();) {
        written = m_file.write(m_pending);
        m_pending.remove(0, std::max(written, qint64{0}));
        m_backlog -= std::max(written, qint64{0});
    }
    if (!syncToDisk(m_file.fileName()) || !m_pending.isEmpty()) {
        onFailed(m_file.errorString());
    }
}

void JournalWriter::close()
{
    m_file.close();
    m_lock.reset();
    m_session.clear();
    m_part = 0;
    m_hasComplained = false;
}

QString JournalWriter::createFile()
{
    const QString path = m_folder + u'/' + m_session;
    const QString part = m_part == 0 ? QString() : u"_%1"_s.arg(m_part + 1, 4, 10, QLatin1Char('0'));
    m_file.setFileName(path + part + ending);
    const QFileInfo folder(m_folder);
    if (!folder.isDir()) {
        QDir().mkpath(folder.path());
        QDir().mkdir(m_folder, owner | QFileDevice::ExeOwner);
    }
    removeOldest();
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered, owner)) {
        return m_file.errorString();
    }
    if (m_lock == nullptr) {
        auto lock = std::make_unique<QLockFile>(path + lockEnding);
        lock->setStaleLockTime(0); // a session can last for days
        if (!lock->tryLock(0)) {
            if (lock->error() == QLockFile::LockFailedError) {
                m_file.close();
                return u"belongs to another process"_s;
            }
            m_file.remove(); // an empty one would count as a session
            return u"No space for its lock file"_s;
        }
        m_lock = std::move(lock);
    }
    syncToDisk(m_folder); // not every file system has this for a folder
    ++m_part;
    m_pending.prepend(m_header);
    m_backlog += m_header.size();
    return {};
}

void JournalWriter::removeOldest() const
{
    static const QRegularExpression pattern(uR"(^(\d{4}-\d\d-\d\d_\d\d-\d\d-\d\d-\d{3}_[A-Z0-9]+)(_\d{4})?\.log$)"_s);
    QSet<QString> sessions{m_session};
    qint64 room = folderSize - partSize; // the rest is for the file that is being created
    // Newest first, since each name begins with the date. Other files of the folder belong to the user.
    const QFileInfoList files = QDir(m_folder).entryInfoList(QDir::Files, QDir::Name | QDir::Reversed);
    for (const QFileInfo &file : files) {
        const QRegularExpressionMatch match = pattern.match(file.fileName());
        if (!match.hasMatch()) {
            continue;
        }
        const QString session = match.captured(1);
        sessions.insert(session);
        room -= file.size();
        const bool isOthers = session != m_session && QFile::exists(m_folder + u'/' + session + lockEnding);
        if ((sessions.size() > keptSessions || room < 0) && !isOthers) {
            QFile::remove(file.filePath());
        }
    }
}

void JournalWriter::onFailed(const QString &reason)
{
    m_timer.start(retryTime);
    if (!std::exchange(m_hasComplained, true)) {
        qCCritical(lcEvents).noquote() << "Unable to write the journal" << m_file.fileName() << reason;
    }
}

QStringList JournalWriter::takeUncleanEnds(const QString &folder)
{
    QStringList ends;
    const QDir directory(folder);
    const QStringList locks = directory.entryList({u'*' + lockEnding}, QDir::Files, QDir::Name);
    for (const QString &lock : locks) {
        const QString session = lock.chopped(lockEnding.size());
        const QStringList files =
            directory.entryList({session + ending, session + "_*"_L1 + ending}, QDir::Files, QDir::Name);
        // Only a lock whose holder has ended is removed. The system's own lock on it decides, so neither a number of a
        // process that is used again nor a lock that a power cut has emptied deceives.
        if (QLockFile(directory.filePath(lock)).removeStaleLockFile() && !files.isEmpty()) {
            ends.append(directory.filePath(files.last()));
        }
    }
    return ends;
}
