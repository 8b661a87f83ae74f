// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SessionJournal.h"

#include "Clock.h"
#include "Identity.h"
#include "JournalWriter.h"
#include "ZepManager.h"

#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr auto diskTimeout = 2s; // at the end of the program

QString stamp(const QDateTime &utc)
{
    return utc.toString(u"yyyy-MM-dd hh:mm:ss 'UTC'");
}
} // namespace

SessionJournal::SessionJournal(ZepManager *manager) : QObject(manager), m_manager(manager)
{
    const QSettings config(u"config.ini"_s, QSettings::IniFormat);
    if (!config.value("Journal/enabled", true).toBool()) {
        return;
    }
    m_folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/journal"_L1;
    m_uncleanFiles = JournalWriter::takeUncleanEnds(m_folder).join(u'\n');
    m_writer = new JournalWriter(m_folder);
    connect(manager, &ZepManager::connected, this, &SessionJournal::begin);
    connect(manager, &ZepManager::disconnected, this, &SessionJournal::end);
    connect(manager->logger(), &Logger::logCreated, this, &SessionJournal::record);
}

SessionJournal::~SessionJournal()
{
    if (m_writer == nullptr) {
        return;
    }
    end();
    if (m_writer->stop(diskTimeout)) {
        delete m_writer; // else the disk is stuck, and the end of the process ends the thread
    }
}

void SessionJournal::begin()
{
    const QDateTime utc = Clock::current()->utcNow();
    const ZepBoard *board = m_manager->board();
    const QString header = u"# %1 %2, %3 on port %4, connected %5\n"_s.arg(Identity::name, Identity::version,
                                                                           board->name(), board->port(), stamp(utc));
    m_writer->begin(utc.toString(u"yyyy-MM-dd_hh-mm-ss-zzz_") + board->name(), header.toUtf8());
}

void SessionJournal::end()
{
    m_writer->append(m_dateLine, "# Ended " + stamp(Clock::current()->utcNow()).toUtf8() + '\n');
    m_writer->end();
}

void SessionJournal::record(const QString &line)
{
    const qint64 offset = m_manager->logger()->utcOffset();
    const QDate date = Clock::current()->utcNow().addSecs(offset).date();
    if (date != m_date || offset != m_utcOffset) {
        m_date = date;
        m_utcOffset = offset;
        m_dateLine = "# " + date.toString(Qt::ISODate).toUtf8();
        if (offset != 0) {
            m_dateLine +=
                ", clock " + QByteArray::number(qAbs(offset)) + " s " + (offset > 0 ? "ahead of" : "behind") + " UTC";
        }
        m_dateLine += '\n';
    }
    m_writer->append(m_dateLine, line.toUtf8() + '\n');
}

void SessionJournal::keepReason(const QByteArray &reason)
{
    if (m_writer != nullptr) {
        m_writer->append(m_dateLine, "# " + reason + '\n');
        m_writer->flush(diskTimeout);
    }
}
