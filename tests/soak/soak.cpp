// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Session after session of the real window with simulated devices, and after each a count of what it has left behind.

#include "../qml/Program.h"
#include "Census.h"
#include "LogModel.h"
#include "PeriodicProfile.h"
#include "PrepassModel.h"
#include "PrepassProfile.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;
using enum ZepBoard::Module;

/// What a user does once the device is connected: a button is pressed as soon as it shows and can be pressed.
///   ">words"  the console of the device is told so
///   "=words"  the log of this session has come to hold a line with these words
///   "AT+..."  a command of the user's own
///   "@method" of ZepManager, which takes a file
///   "/path"   that port is connected to, and without a name the device's
///   "2..."    the clock is set to that date
struct Session
{
    QList<ZepBoard::Module> boards;
    QByteArrayList steps;
};
const Session c_round[] = {
    {{ZEP1, ZEP2, TBX, RANGER}, {"Settings", "Return", "Expand window", "Disconnect", "OK"}},
    {{ZEP1, ZEP2, TBX}, {"Periodic", "Start", ">rx 48656C6C6F", "Reset"}},
    {{ZEP1, ZEP2, TBX},
     {"2030-01-01T00:00:00Z", "Pre-pass", "Start", "=0 satellite(s) available", "Reset", "Periodic"}},
    {{ZEP2, TBX},
     {"AT+PREPASS_EN=1", "AT+PREPASS_EN=?", "AOP data: Get parameter(s) from module",
      "AOP data: Set parameter(s) in module", ">pass 1 3", "Start", "=successfully transmitted", "Stop",
      "AT+PREPASS_EN=0", "AT+PREPASS_EN=?"}},
    {{RANGER},
     {"@exportConfig", "@importConfig", "Upload config", "=Config uploaded", ">sleep", "=RANGER -- SLEEP",
      "Configuration: Get parameter(s) from module", "Configuration: Get parameter(s) from module"}},
    {{ZEP2, ZEP1, TBX}, {"Start", "=successfully transmitted", ">unplug", "OK", ">plug"}},
    {{RANGER}, {"Settings", ">unplug", "OK", ">plug"}},
    {{ZEP2},
     {">garbage 40", "Request ZEP info", ">late 1200", "Request ZEP info", "Start", ">assert watchdog", "Start"}},
    {{ZEP2, RANGER}, {">say window 12 is open, level -97 dBm", "=window 12"}}, // fills the pane
    {{ZEP1}, {"Disconnect", "OK", ">mute 1", "/", "OK", "/dev/nowhere", "OK"}},
};
constexpr auto c_passes = "Satellite,Start date/time,Middle date/time,End date/time,Duration,Middle elevation,Start "
                          "azimuth,Middle azimuth,End azimuth\n"
                          "SAT,01-01-2030 00:00:01,,,00:00:01,42,,,\nSAT,01-01-2030 00:00:03,,,00:00:01,42,,,\n"
                          "SAT,01-01-2030 00:00:50,,,00:12:00,42,,,\n";
constexpr auto c_line = "window 12 is open, channel 3, level -97 dBm, noise -118 dBm, margin 21 dB";
constexpr int c_patience = 15000;            // ms for what must come
constexpr int c_longWait = 10000;            // ms that a sequence waits, from which on it is shortened
constexpr int c_samples = 5000;              // passes
constexpr qint64 c_heapTolerance = 256;      // KiB
constexpr qint64 c_residentTolerance = 2048; // KiB
#ifdef __SANITIZE_ADDRESS__
constexpr bool c_memoryCounts = false; // what is free waits in quarantine
#else
constexpr bool c_memoryCounts = true;
#endif

/// A simulator. As a process of its own it stays out of the program's memory.
struct Device : QProcess
{
    explicit Device(const QString &link) : port(link)
    {
        setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
        start(ZEPSIM, {"--board", link.section(u'/', -1), "--link", link, "--airtime", "600", "--bulletins", "0"});
        (void)hear(); // the port
        bulletins = hear().section(u' ', 1);
    }
    ~Device() override { kill(), waitForFinished(); }
    QString hear()
    {
        while (!canReadLine() && waitForReadyRead(c_patience)) {
        }
        return QString::fromUtf8(readLine().trimmed());
    }
    void tell(const QByteArray &words, int times = 1)
    {
        write((words + '\n').repeated(times));
        for (QString answer; times > 0; times -= answer == u"ok"_s) { // what is plugged in tells its port, too
            if (answer = hear(); answer.isEmpty() || answer.startsWith(u"error"_s)) {
                qFatal("'%s': '%s'", words.constData(), qPrintable(answer));
            }
        }
    }
    const QString port;
    QString bulletins;
};

struct Soak : QObject
{
    Soak()
    {
        QObject::connect(ui.manager->logger(), &Logger::logCreated, this, [this](const QString &line) {
            ++lines;
            log += isLogKept ? line.toUtf8() : QByteArray();
        });
        QObject::connect(ui.manager, &ZepManager::userActionRequested, this, [this] {
            const bool isLazy = log.contains("-- SLEEP") && !log.contains("Request has been cancelled");
            QTimer::singleShot(50, this, [=, this] { isLazy ? take("Cancel") : device().tell("wake"); });
        });
        for (const auto *model : {tx->prepassListModel(), tx->prepassProfile()->nextPassModel()}) {
            QObject::connect(model, &PrepassModel::rowsInserted, this, [this] { ++listed; });
        }
        QObject::connect(&shortener, &QTimer::timeout, this, [this, next = tx->findChild<QTimer *>("scheduleTimer")] {
            // What a module computes comes when it comes, and a Tx before the last answer would be a fault.
            const int left = next->remainingTime();
            if (left > c_longWait && !tx->ackPending() && tx->selectedProfile() != TxManager::PREPASS_ON_MODULE) {
                skipped += left;
                next->start(0);
            }
        });
        shortener.start(20);
        tx->findChild<QTimer *>("utcTimeRefreshTimer")->setInterval(50);
        tx->periodicProfile()->setRedundancy(2);
        tx->addPayloadItem("A1B2C3D4");
        tx->addPayloadItem("0A0B0C0D");
        QFile table("passes.csv"); // the program has made its folder the current one
        (void)(table.open(QIODevice::WriteOnly) && table.write(c_passes) && table.flush());
        tx->importPrepassData(url("passes.csv")); // and again at each connection
    }
    QString url(const char *file) const { return QUrl::fromLocalFile(ui.folder.filePath(file)).toString(); }
    Device &device() { return devices[board - 1]; }
    void fail(const QByteArray &what)
    {
        ++failures;
        std::printf("FAILED in session %d on %s: %s\n", played, qPrintable(device().port), what.constData());
    }
    void wait(const QByteArray &what, const std::function<bool()> &condition)
    {
        QTest::qWaitFor(condition, c_patience) ? void()
                                               : fail("waited in vain for '" + what + "' behind " + log.right(400));
    }
    void take(const QByteArray &step)
    {
        const auto button = [&] { return ui.find(step, "checkable"); };
        const auto *pages = ui.bar()->property("stackView").value<QObject *>();
        switch (step.front()) {
        case '>':
            return device().tell(step.mid(1), step.startsWith(">say") ? 100 : 1);
        case '=':
            return wait(step, [&] { return log.contains(step.mid(1)); });
        case '@':
            QMetaObject::invokeMethod(ui.manager, step.mid(1), Q_ARG(QString, url("config.txt")));
            return;
        case '/':
            return ui.manager->connect(board, step.size() > 1 ? step : device().port, "Default");
        case '2':
            return tx->setCustomUtcTime(step);
        default:
            if (step.startsWith("AT+")) {
                return ui.manager->requestCustomCmd(step);
            }
            wait(step, [&] { return button() && button()->isEnabled() && !pages->property("busy").toBool(); });
            button() ? void(QMetaObject::invokeMethod(button(), "clicked")) : void();
        }
    }
    void play()
    {
        for (const Session &session : c_round) {
            for (const ZepBoard::Module module : isShort ? session.boards.first(1) : session.boards) {
                board = module;
                log.clear();
                take("/");
                tx->prepassProfile()->downloadAopData();
                for (const QByteArray &step : session.steps) {
                    take(step);
                }
                ui.manager->disconnect();
                ++played;
                count();
            }
        }
    }
    /// The first round tells how much there may be between two sessions.
    void count()
    {
        const auto isAtRest = [&] {
            ui.engine->collectGarbage();
            now = Census::now();
            // What Qt 6.4 leaves behind itself: the one by each window that closes with the focus, the other by each
            // change of a view's model, which is where a Ranger's sensors come and go.
            now.removeIf([](const auto &count) {
                return count.key().endsWith("::focusObjectChanged(QObject*)") ||
                       count.key() == "connection QQmlDelegateModel::delegateChanged()";
            });
            forgotten = now.take("object Prepass"); // by design a table keeps the rows that it has lost
            return (isLearning ? idle : most).growthTo(now, isLearning ? "timer" : "").isEmpty();
        };
        if (!QTest::qWaitFor(isAtRest, c_patience) && !isLearning) {
            QByteArrayList growth = most.growthTo(now);
            // Bindings of the same objects listen elsewhere when a session has left other values. What is left behind
            // comes again.
            growth.removeIf([this](const QByteArray &more) {
                return more.contains(" connection ") && !std::exchange(suspects[more.mid(more.indexOf(' '))], true);
            });
            growth.isEmpty() ? void() : fail("left behind " + growth.join(", "));
        }
        for (auto count = now.cbegin(); count != now.cend(); ++count) {
            most[count.key()] = std::max(most[count.key()], *count);
        }
        forgotten == listed ? void() : fail(QByteArray::number(forgotten - listed) + " passes more than were listed");
    }
    Memory report(const char *phase)
    {
        QTest::qWait(100);
        ui.engine->collectGarbage();
        const Memory memory = Memory::measure();
        const double seconds = double(clock.elapsed()) / 1000;
        // cppcheck-suppress invalidPrintfArgType_sint ; a qint64 is a long long
        std::printf("%-8s %7.1f %6.2f %8d %8d %8lld %8lld %6d %6d %7d %7d %7d\n", phase, seconds,
                    (double(skipped) / 1000 + seconds) / 3600, played, lines, memory.heap, memory.resident,
                    now.total("timer"), now.total("connection"), now.total("object"), now.total("file"), forgotten);
        std::fflush(stdout);
        return memory;
    }
    void compare(const char *what, const Memory &from, const Memory &to, qint64 explained)
    {
        const qint64 heap = to.heap - from.heap;
        const qint64 resident = to.resident - from.resident;
        // cppcheck-suppress invalidPrintfArgType_sint ; a qint64 is a long long
        std::printf("%s: heap %+lld, resident %+lld, explained %+lld KiB\n", what, heap, resident, explained);
        if (c_memoryCounts && (heap > explained + c_heapTolerance || resident > explained + c_residentTolerance)) {
            fail(what + QByteArray(": more memory than is explained"));
        }
    }

    int run(int minutes, int wanted)
    {
        isShort = minutes == 0;
        for (QQuickItem *view : ui.window->findChildren<QQuickItem *>()) {
            view->property("reuseItems").isValid() &&
                view->setProperty("reuseItems", false); // how many rows a log keeps for reuse is a matter of chance
        }
        QTest::qWait(4000);
        idle = Census::now();
        // What passes and lines cost: kept by nothing but a table and two panes that nobody sees, as many as the
        // program has.
        const auto used = [] { return Memory::measure().heap; };
        qint64 before = used();
        PrepassModel table;
        for (int row = 0; row < c_samples; ++row, ++listed) {
            table.addPrepass("SAT" + QString::number(row), QDateTime::currentDateTimeUtc(), QTime(0, 8), 42, false);
        }
        const qint64 costOfSamples = used() - before;
        Logger logger;
        auto panes = std::make_unique<std::array<LogModel, 2>>();
        for (LogModel &pane : *panes) {
            QObject::connect(&logger, &Logger::logCreated, &pane, &LogModel::append);
        }
        for (int line = 0; line < wanted; ++line) {
            before = line == wanted / 10 ? used() : before;
            logger.log(Logger::ZEP, c_line);
        }
        const qint64 costOfLines = used() - before;
        panes.reset();
        play(); // makes what is made at its first use
        isLearning = false;

        std::printf(
            "phase    seconds  hours sessions    lines heap/KiB  res/KiB timers  conns objects handles  passes\n");
        clock.start();
        Memory first = report("start");
        Memory last = first;
        int kept = forgotten;
        for (int tenth = 0, done = 0; tenth < 10; tenth = done) {
            for (done = tenth; done == tenth;) {
                play(); // to its end, where the models hold the same each time
                done = isShort ? 10 : int(std::min(clock.elapsed() / (minutes * 6000LL), qint64{10}));
            }
            last = report("sessions");
            first = tenth == 0 && done < 10 ? last : first;
            kept = tenth == 0 && done < 10 ? forgotten : kept;
        }
        const qint64 costOfKept = costOfSamples * (forgotten - kept) / c_samples;
        compare("sessions", first, last, costOfKept);

        board = ZEP2;
        isLogKept = false;
        take("/");
        Memory tenthOfLog;
        for (int part = 1; part <= 10; ++part) {
            for (const int goal = lines + wanted / 10, known = failures; lines < goal && failures == known;) {
                const int next = std::min(goal, lines + 1000);
                device().tell("say " + QByteArray(c_line), next - lines);
                wait("lines", [&] { return lines >= next; });
            }
            last = report("log");
            tenthOfLog = part == 1 ? last : tenthOfLog;
        }
        compare("the log", tenthOfLog, last, costOfLines);
        ui.manager->disconnect();
        count();
        compare("the log cleared", first, report("cleared"), costOfKept);
        std::printf("%d sessions, %d lines, %d failures\n", played, lines, failures);
        return failures == 0 ? 0 : 1;
    }

    QTemporaryDir ports;
    Device devices[4]{Device(ports.filePath("zep1")), Device(ports.filePath("zep2")), Device(ports.filePath("tbx")),
                      Device(ports.filePath("ranger"))};
    Program ui{devices[0].bulletins};
    TxManager *tx = ui.tx();
    QTimer shortener;
    QElapsedTimer clock;
    Census idle; ///< when nothing moves
    Census most; ///< of each between two sessions
    Census now;
    QMap<QByteArray, bool> suspects; ///< signals that have had more connections once
    ZepBoard::Module board = ZEP1;
    QByteArray log; ///< of the session
    bool isLearning = true;
    bool isLogKept = true;
    bool isShort = true; ///< each session on its first board only
    int failures = 0, played = 0, lines = 0, forgotten = 0;
    int listed = 1;     ///< rows of tables of passes; the first was there before anyone could hear of it
    qint64 skipped = 0; ///< ms that were not waited
};

int main(int argc, char *argv[])
{
    setvbuf(stdout, nullptr, _IOLBF, 0);
    Census::begin();
    QGuiApplication application(argc, argv);
    QLoggingCategory::setFilterRules("*.debug=false\n*.info=false\nzepgui.*=false");
    return Soak().run(argc > 1 ? std::atoi(argv[1]) : 0, argc > 2 ? std::atoi(argv[2]) : 20000);
}
