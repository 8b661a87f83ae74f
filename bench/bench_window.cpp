// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The whole window with its panes, a device pouring lines: how long the event loop is held, and what it costs.
// Prints "name value" lines for bench/run.

#include "Identity.h"
#include "LogFinder.h"
#include "PrepassModel.h"
#include "QmlTypes.h"
#include "ResidentMemory.h"
#include "TxManager.h"
#include "WireThread.h"
#include "ZepManager.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickItem>
#include <QTemporaryFile>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {
constexpr int pouredLines = 100'000;
constexpr int wireBytesPerSecond = 11'520; // 115200 baud, ten bits a byte
constexpr int wireSeconds = 10;
constexpr int wireLines = wireBytesPerSecond * wireSeconds / 60;
constexpr int idleMilliseconds = 10'000;
constexpr int searchedLines = 1'000'000;
constexpr int importedRows = 100'000;
constexpr qint64 importedSpan = qint64{30} * 86'400; // s that the passes spread over

/// Of this thread, which is the program's: the device's thread beside it asks its terminal a thousand times a second.
double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    const auto seconds = [](const timeval &time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Beats every millisecond and keeps the longest pause between two beats, in milliseconds.
class Pulse : public QObject
{
public:
    Pulse()
    {
        connect(&m_timer, &QTimer::timeout, this, [this] { m_longest = std::max(m_longest, m_clock.restart()); });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_clock.start();
        m_timer.start(1);
    }
    [[nodiscard]] qint64 longest() const { return m_longest; }

private:
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_longest = 0;
};

void waitFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/// The pause, in milliseconds, while a long table of passes is imported and shown.
qint64 importStall(ZepManager &manager)
{
    QTemporaryFile file;
    if (!file.open()) {
        qFatal("no file for the table");
    }
    const QDateTime now = QDateTime::currentDateTimeUtc();
    file.write("Satellite,Start date/time,Middle date/time,End date/time,Duration,Middle elevation,Start azimuth,"
               "Middle azimuth,End azimuth\n");
    for (int row = 0; row < importedRows; ++row) {
        const QString date = now.addSecs(60 + row * 7919LL % importedSpan).toString(u"MM-dd-yyyy hh:mm:ss"_s);
        file.write(u"SAT-%1,%2,%2,%2,00:12:00,45.25,10.5,180.25,350.75\n"_s.arg(row % 25).arg(date).toUtf8());
    }
    file.close();

    TxManager *tx = manager.tx();
    tx->setSelectedProfile(TxManager::PREPASS);
    waitFor(500);
    const Pulse pulse;
    tx->importPrepassData(QUrl::fromLocalFile(file.fileName()).toString());
    waitFor(1000); // the rows that show
    if (tx->prepassListModel()->rowCount() != importedRows) {
        qFatal("the table was not taken whole");
    }
    return pulse.longest();
}
/// Looks for a word in a long log of the window, from the typed word to the tenth hit: the longest pause, and the time
/// until all lines have been looked through. The word is in every thousandth line.
void measureFind(ZepManager &manager, const QObject &window)
{
    for (int line = 0; line < searchedLines; ++line) {
        Q_EMIT manager.logger()->logCreated(line % 1000 == 0 ? u"[10:00:00:000] [ZEP] a line with a Needle"_s
                                                             : u"[10:00:00:000] [ZEP] +TX=0,00112233445566778899"_s);
        if (line % 10'000 == 0) {
            waitFor(1);
        }
    }
    waitFor(1000);
    QObject *frame = nullptr;
    const auto frames = window.findChildren<QQuickItem *>();
    for (QQuickItem *item : frames) {
        if (item->property("mFindDefault").toBool() && item->isVisible()) {
            frame = item;
        }
    }
    if (frame == nullptr || !QMetaObject::invokeMethod(frame, "beginFind")) {
        qFatal("no log to look in");
    }
    auto *finder = frame->findChild<LogFinder *>();
    const Pulse pulse;
    QElapsedTimer time;
    time.start();
    finder->setPattern(u"needle"_s);
    while (finder->isSearching()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    const qint64 searched = time.elapsed();
    for (int hit = 0; hit < 10; ++hit) {
        finder->previous();
        waitFor(100);
    }
    if (finder->count() < searchedLines / 1000 - 1) {
        qFatal("hits are missing");
    }
    std::printf("find_stall_ms %lld\nfind_ms %lld\n", static_cast<long long>(pulse.longest()),
                static_cast<long long>(searched));
}
} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    QGuiApplication::setOrganizationName(Identity::organization);
    QGuiApplication::setApplicationName(u"ZepGUI bench"_s);
    QQmlApplicationEngine engine;
    registerQmlTypes();
    QLoggingCategory::setFilterRules(u"*=false"_s);
    engine.rootContext()->setContextProperty(u"QT_VERSION"_s, QString::fromLatin1(qVersion()));
    engine.load(QUrl(u"qrc:/qml/main.qml"_s));
    auto *manager = engine.singletonInstance<ZepManager *>(qmlTypeId("com.sarvane.qml", 1, 0, "ZepManager"));
    if (engine.rootObjects().isEmpty() || !manager) {
        return 1;
    }
    WireThread wire;
    manager->connect(ZepBoard::ZEP2, QString::fromLatin1(wire.path()), u"Default"_s);
    waitFor(2000);

    int lines = 0;
    QEventLoop poured;
    int awaited = pouredLines;
    QObject::connect(manager->logger(), &Logger::logCreated, &poured, [&] {
        if (++lines == awaited) { // the context is what is captured; clazy:exclude=lambda-in-connect
            poured.quit();
        }
    });

    {
        const Pulse pulse;
        const qint64 before = residentKib();
        wire.pour(pouredLines);
        poured.exec();
        waitFor(500); // the panes' last batch
        std::printf("pour_stall_ms %lld\n", static_cast<long long>(pulse.longest()));
        waitFor(2000); // the journal
        std::printf("line_bytes %lld\n", static_cast<long long>((residentKib() - before) * 1024 / pouredLines));
    }
    {
        lines = 0;
        awaited = wireLines;
        const Pulse pulse;
        QElapsedTimer time;
        time.start();
        const double before = cpuSeconds();
        wire.pour(wireLines, wireBytesPerSecond);
        poured.exec();
        std::printf("wire_core_share %.4f\nwire_stall_ms %lld\n",
                    (cpuSeconds() - before) / (double(time.elapsed()) / 1000), static_cast<long long>(pulse.longest()));
    }
    std::printf("import_stall_ms %lld\n", static_cast<long long>(importStall(*manager)));
    waitFor(1000);
    const double before = cpuSeconds();
    waitFor(idleMilliseconds);
    std::printf("idle_core_share %.4f\n", (cpuSeconds() - before) / (idleMilliseconds / 1000.0));
    measureFind(*manager, *engine.rootObjects().constFirst());
    return 0;
}
