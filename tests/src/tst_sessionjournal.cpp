// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Assertion.h"
#include "Clock.h"
#include "Criticals.h"
#include "ScriptedSession.h"
#include "SessionJournal.h"

#include <QDir>
#include <QDirIterator>
#include <QLockFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <semaphore>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {
std::mutex mutex;
QHash<QString, qint64> synced; ///< the size that each file or folder had when it was last moved to the disk
std::atomic<bool> isDiskStuck = false;
std::atomic<int> stuckCalls = 0;
std::binary_semaphore diskWorks{0};

constexpr auto childVariable = "ZEPGUI_JOURNAL_CHILD"; ///< of the environment
constexpr int childPeriod = 20;                        // ms from line to line, at least
constexpr int linesInASecond = 1000 / childPeriod;
constexpr qsizetype bigSize = 100 << 10;
constexpr qint64 mebibyte = 1 << 20;
const QString bigLine = "big"_L1 + QString(bigSize, u'x');
constexpr qsizetype stampSize = sizeof "[hh:mm:ss:zzz] [APP] " - 1;

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

qsizetype bigLines(const QByteArray &text)
{
    const QList<QByteArray> lines = text.split('\n');
    return std::count_if(lines.begin(), lines.end(), [big = bigLine.toUtf8()](const QByteArray &line) {
        return line.mid(stampSize).startsWith(big);
    });
}

bool isOnDisk(const QString &path)
{
    const std::lock_guard lock(mutex);
    return synced.value(path, -1) == QFileInfo(path).size();
}

/// A clock that stops until it is set.
struct SetClock : Clock
{
    SetClock() { install(this); }
    ~SetClock() override { install(nullptr); }
    SetClock(const SetClock &) = delete;
    SetClock &operator=(const SetClock &) = delete;
    [[nodiscard]] QDateTime utcNow() const override { return now; }
    QDateTime now{{2026, 11, 25}, {23, 59, 59, 500}, Qt::UTC};
};
} // namespace

// Takes the place of the system's, whose effect only a power cut would show.
extern "C" int fsync(int handle)
{
    if (isDiskStuck) {
        ++stuckCalls;
        diskWorks.acquire();
    }
    const QString path = QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(handle));
    const std::lock_guard lock(mutex);
    synced[path] = QFileInfo(path).size();
    return 0;
}

class TestSessionJournal : public QObject
{
    Q_OBJECT

    std::unique_ptr<ScriptedSession> m_session;

    void create(bool hasJournal = true) { m_session = std::make_unique<ScriptedSession>(QString(), hasJournal); }
    void begin(bool hasJournal = true)
    {
        create(hasJournal);
        QVERIFY(m_session->connectTo(ZepBoard::ZEP1));
    }
    void flush() { m_session->manager.journal()->keepReason("flushed"); }
    void log(const QString &line) { m_session->manager.logger()->log(Logger::APP, line); }
    static QDir folder() { return {qEnvironmentVariable("XDG_DATA_HOME") + "/Sarvane/ZepGUI/journal"_L1}; }
    static QStringList logs() { return folder().entryList({u"*.log"_s}, QDir::Files, QDir::Name); }
    static QByteArray firstLog() { return content(folder().filePath(logs().value(0))); }

    /// What a child of this test does: a session with a payload, until it is killed or an assertion fails.
    void playChild(const QString &end)
    {
        begin();
        m_session->manager.tx()->addPayloadItem("C0FFEE");
        for (int line = 0;; ++line) {
            log(u"line %1."_s.arg(line));
            std::printf("line %d.\n", line);
            std::fflush(stdout);
            ZEPGUI_ASSERT(end == "kill"_L1 || line < linesInASecond, "no more lines", "src/Child");
            QTest::qWait(childPeriod);
        }
    }

private Q_SLOTS:
    void cleanup() { m_session.reset(); }

    void sessionIsOnTheDiskWithinASecondForItsOwnerAlone()
    {
        SetClock clock;
        begin(false);
        QVERIFY(!QFileInfo::exists(folder().path()));
        begin();
        m_session->manager.disconnect();
        QTRY_VERIFY(firstLog().endsWith("# Ended 2026-11-25 23:59:59 UTC\n"));
        QVERIFY(folder().removeRecursively());

        auto manager = std::make_unique<ZepManager>(nullptr);
        const auto connect = [&] { manager->connect(ZepBoard::ZEP1, m_session->peer.path(), u"Default"_s); };
        m_session->peer.answer(u"AT+PING=?"_s, {u"+ERROR=6"_s});
        connect();
        manager->disconnect();
        m_session->peer.answer(u"AT+PING=?"_s, {u"+OK"_s});
        connect();
        manager->logger()->log(Logger::APP, u"caf\u00e9"_s);
        const QString path = folder().filePath(u"2026-11-25_23-59-59-500_ZEP1.log"_s);
        QTRY_VERIFY_WITH_TIMEOUT(content(path).endsWith("[APP] caf\xc3\xa9\n") && isOnDisk(path), 1000);
        QVERIFY(isOnDisk(folder().path()));
        for (const QString &mine : {path, folder().path()}) {
            QVERIFY(!(QFile::permissions(mine) & QFileDevice::Permissions(0x0077)));
        }

        clock.now = clock.now.addSecs(1);
        manager->logger()->log(Logger::APP, u"next day"_s);
        manager->logger()->setUtcOffset(-3600);
        manager->logger()->log(Logger::APP, u"an hour back"_s);
        manager.reset(); // the window was closed
        QCOMPARE(folder().entryList(QDir::Files), QStringList(QFileInfo(path).fileName()));
        const QRegularExpression expected(uR"(^# ZepGUI [0-9.]+, ZEP1 on port %1, connected 2026-11-25 23:59:59 UTC
# 2026-11-25
\[23:59:59:500\] \[APP\] AT\+PING=\?
\[23:59:59:500\] \[ZEP\] \+OK
(\[23:59:59:500\] .*
)+# 2026-11-26
\[00:00:00:500\] \[APP\] next day
# 2026-11-25, clock 3600 s behind UTC
\[23:00:00:500\] \[APP\] an hour back
# Ended 2026-11-26 00:00:00 UTC
$)"_s.arg(m_session->peer.path()));
        QVERIFY2(expected.match(QString::fromUtf8(content(path))).hasMatch(), content(path));
    }

    void uncleanEndKeepsItsLastSecondAndIsReportedOnce_data()
    {
        QTest::addColumn<QString>("end");
        QTest::newRow("kill -9") << u"kill"_s;
        QTest::newRow("assertion") << u"assertion"_s;
    }
    void uncleanEndKeepsItsLastSecondAndIsReportedOnce()
    {
        QFETCH(const QString, end);
        if (qEnvironmentVariableIsSet(childVariable)) {
            playChild(end);
        }
        const QTemporaryDir tree;
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(childVariable, u"yes"_s);
        environment.insert(u"TMPDIR"_s, tree.path());
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::MergedChannels);
        const auto test =
            QLatin1StringView(QTest::currentTestFunction()) + u':' + QLatin1StringView(QTest::currentDataTag());
        program.start(QCoreApplication::applicationFilePath(), {u"-nocrashhandler"_s, test});
        QByteArray printed;
        const auto awaitLine = [&](int number) {
            const QByteArray line = "line " + QByteArray::number(number) + '.';
            QTRY_VERIFY2((printed += program.readAll()).contains(line), printed);
        };
        awaitLine(0);
        const Place place({}, true);
        const auto findLog = [&] {
            QDirIterator found(tree.path(), {u"*_ZEP1.log"_s}, QDir::Files, QDirIterator::Subdirectories);
            return found.hasNext() ? found.next() : QString();
        };
        QTRY_VERIFY(!findLog().isEmpty());
        const QString path = findLog();
        const QString data = path.section(u'/', 0, -5);
        qputenv("XDG_DATA_HOME", data.toUtf8());
        if (end == "kill"_L1) {
            QVERIFY(ZepManager(nullptr).journal()->uncleanFiles().isEmpty());
            // Not one of those that came to the disk when the file was made.
            const int last = static_cast<int>((printed += program.readAll()).count("line ")) + 5;
            awaitLine(last + linesInASecond);
            program.kill();
            QVERIFY(program.waitForFinished());
            QVERIFY(content(path).contains("line " + QByteArray::number(last) + ".\n"));
        } else {
            QTRY_COMPARE(program.state(), QProcess::NotRunning);
            QCOMPARE(program.exitStatus(), QProcess::CrashExit);
            const QByteArray reason = "ASSERT failure in src/Child: ";
            QVERIFY2(program.readAll().prepend(printed).contains(reason), printed);
            QVERIFY(content(path).contains("line " + QByteArray::number(linesInASecond) + ".\n# " + reason));
            QVERIFY(content(data + "/Sarvane/ZepGUI.conf"_L1).contains("msg0=C0FFEE"));
        }
        QCOMPARE(ZepManager(nullptr).journal()->uncleanFiles(), path);
        QVERIFY(ZepManager(nullptr).journal()->uncleanFiles().isEmpty() && QFile::exists(path));
    }

    void failingDiskIsOneLineAndItsTextIsWrittenLater_data()
    {
        QTest::addColumn<qint64>("room"); // of a file; -1 for a folder that cannot be made
        QTest::addColumn<QString>("reason");
        QTest::newRow("full") << bigSize * 5 / 2 << u"File too large"_s;
        QTest::newRow("full from the start") << qint64{0} << u"No space for its lock file"_s;
        QTest::newRow("no folder") << qint64{-1} << u"Not a directory"_s;
    }
    void failingDiskIsOneLineAndItsTextIsWrittenLater()
    {
        QFETCH(const qint64, room);
        QFETCH(const QString, reason);
        const bool isFull = room >= 0;
        create();
        QFile obstacle(folder().path());
        QVERIFY(QDir().mkpath(QFileInfo(obstacle).path()) && (isFull || obstacle.open(QIODevice::WriteOnly)));
        rlimit limit{};
        QVERIFY(getrlimit(RLIMIT_FSIZE, &limit) == 0);
        const rlimit small{isFull ? static_cast<rlim_t>(room) : limit.rlim_cur, limit.rlim_max};
        std::signal(SIGXFSZ, SIG_IGN); // the write fails, as on a full disk
        // Not before the port, whose lock is a file too, is open.
        connect(&m_session->manager, &ZepManager::connected, this, [&] { setrlimit(RLIMIT_FSIZE, &small); });
        const auto restore = qScopeGuard([&] { setrlimit(RLIMIT_FSIZE, &limit); });

        expectCritical(QRegularExpression(u"^Unable to write the journal .*_ZEP1.log %1$"_s.arg(reason)));
        QVERIFY(m_session->connectTo(ZepBoard::ZEP1));
        for (int line = 0; line < 4; ++line) {
            log(bigLine);
            flush();
        }
        QVERIFY(room != 0 || logs().isEmpty()); // an empty one would count as a session
        (void)obstacle.remove();
        setrlimit(RLIMIT_FSIZE, &limit);
        QTRY_COMPARE(bigLines(firstLog()), 4);
    }

    void stuckDiskStopsNeitherTheSessionNorItsEnd()
    {
        create();
        auto manager = std::make_unique<ZepManager>(nullptr);
        manager->connect(ZepBoard::ZEP1, m_session->peer.path(), u"Default"_s);
        isDiskStuck = true;
        QTRY_COMPARE(stuckCalls.load(), 1);
        constexpr int lines = 200; // 20 MiB
        for (int line = 0; line < lines; ++line) {
            manager->logger()->log(Logger::APP, bigLine);
        }
        isDiskStuck = false;
        diskWorks.release();
        manager->journal()->keepReason("works again");
        manager->logger()->log(Logger::APP, u"later"_s);
        manager->journal()->keepReason("flushed");
        const QByteArray text = firstLog();
        const qsizetype kept = bigLines(text);
        const QByteArray missing = QByteArray::number((lines - kept) * (stampSize + bigLine.size() + 1));
        const qsizetype gap = text.indexOf("# " + missing + " bytes are missing here\n");
        QVERIFY(kept > lines / 2 && kept < lines);
        QVERIFY(gap > text.lastIndexOf("[APP] big") && text.indexOf("[APP] later\n") > gap);

        isDiskStuck = true;
        manager->logger()->log(Logger::APP, u"last"_s);
        QTRY_COMPARE(stuckCalls.load(), 2);
        manager.reset();
        isDiskStuck = false;
        diskWorks.release();
        QTRY_COMPARE(folder().entryList(QDir::Files), logs()); // without the lock
        QVERIFY(firstLog().contains("[APP] last\n# Ended "));
    }

    void longSessionContinuesInFilesThatEachBeginWithItsDate()
    {
        begin();
        constexpr int lines = 3 * 256; // 75 MiB
        for (int line = 0; line < lines; ++line) {
            log(bigLine + u' ' + QString::number(line));
            if (line % 100 == 0) {
                flush();
            }
        }
        flush();
        const QStringList names = logs();
        QCOMPARE(names.size(), 4);
        QByteArray all;
        for (const QString &name : names) {
            const QByteArray text = content(folder().filePath(name));
            QVERIFY(text.size() <= 25 * mebibyte);
            QVERIFY(text.startsWith("# ZepGUI ") && text.mid(text.indexOf('\n')).startsWith("\n# 20"));
            all += text;
        }
        QCOMPARE(bigLines(all), lines);
        qsizetype at = 0;
        for (int line = 0; line < lines && at >= 0; ++line) {
            at = all.indexOf("x " + QByteArray::number(line) + '\n', at + 1);
        }
        QVERIFY(at > 0); // in order
    }

    void oldestFilesGiveWayButNoneOfAnotherWindow_data()
    {
        QTest::addColumn<int>("size"); // of each file, in MiB
        QTest::addColumn<int>("kept");
        QTest::newRow("more than 20 sessions") << 0 << 19;
        QTest::newRow("more than 100 MiB") << 10 << 7; // the new session may take 25
    }
    void oldestFilesGiveWayButNoneOfAnotherWindow()
    {
        QFETCH(const int, size);
        QFETCH(const int, kept);
        create();
        QVERIFY(folder().mkpath(u"."_s));
        QStringList names;
        for (int day = 1; day <= 25; ++day) {
            names.append(u"2020-01-%1_00-00-00-000_TBX.log"_s.arg(day, 2, 10, QLatin1Char('0')));
        }
        for (const QString &name : names + QStringList(u"mine.log"_s)) {
            QFile file(folder().filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(size * mebibyte));
        }
        QLockFile other(folder().filePath(names.at(2).chopped(4) + ".lock"_L1));
        QVERIFY(other.tryLock());
        QVERIFY(m_session->connectTo(ZepBoard::ZEP1));
        flush();
        QCOMPARE(logs().filter(u"TBX"_s), names.mid(2, 1) + names.last(kept));
        QVERIFY(logs().contains(u"mine.log"_s));
    }
};

QTEST_GUILESS_MAIN(TestSessionJournal)
#include "tst_sessionjournal.moc"
