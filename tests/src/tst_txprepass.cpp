// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <sys/resource.h>
#include <sys/stat.h>

#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include "PrepassModel.h"
#include "PrepassProfile.h"
#include "ScriptedSession.h"
#include "TxBench.h"

using namespace Qt::StringLiterals;

/// The profiles that follow passes. Ticks of the clock and expiries are made by hand, so that the distance to a pass
/// is exact to the millisecond.
class TxPrepassTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TxBench> m_bench;
    QString m_path;

    TxManager &prepare(TxManager::Profile profile, const QStringList &messages = {})
    {
        TxManager &tx = m_bench->create();
        tx.findChild<QTimer *>("utcTimeRefreshTimer")->stop();
        std::for_each(messages.begin(), messages.end(), [&tx](const QString &text) { tx.addPayloadItem(text); });
        tx.setSelectedProfile(profile);
        m_bench->recordStates(m_bench->sent);
        return tx;
    }

    static void tick(TxManager &tx) { QMetaObject::invokeMethod(&tx, "onUtcTimeRefreshOver"); }
    static void expire(TxManager &tx) { QMetaObject::invokeMethod(&tx, "onScheduleOver"); }
    QString sent() { return std::exchange(m_bench->sent, {}).join(' '); }

    /// Adds a row that starts \a start ms from the clock's present time.
    static void add(const TxManager &tx, PrepassModel *model, qint64 start, int seconds)
    {
        model->addPrepass("SAT", tx.utcDateTime().addMSecs(start), QTime(0, 0).addSecs(seconds), 0, false);
    }

    /// From now on each request for the next pass is answered by one that starts \a start ms later.
    void answerNextPass(qint64 start, int seconds = 300)
    {
        m_bench->duringNextPass = [this, start, seconds] {
            PrepassModel *model = m_bench->manager->prepassProfile()->nextPassModel();
            model->clear();
            add(*m_bench->manager, model, start, seconds);
        };
    }

    /// Writes a table of passes "name seconds-from-now duration".
    void write(const QStringList &passes)
    {
        QByteArray table = "Satellite;Start date/time;Middle date/time;End date/time;Duration;Middle elevation;Start "
                           "azimuth;Middle azimuth;End azimuth\n";
        for (const QString &pass : passes) {
            const QDateTime start = QDateTime::currentDateTimeUtc().addSecs(pass.section(' ', 1, 1).toInt());
            table += pass.section(' ', 0, 0).toLatin1() + start.toString(";MM-dd-yyyy hh:mm:ss;;;").toLatin1() +
                     pass.section(' ', 2).toLatin1() + ";5;;;\n";
        }
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(table) == table.size());
    }

private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<TxBench>();
        m_path = m_bench->folder.filePath("passes é.csv");
    }

    void failedImportSaysSoAndRemembersWhatItCouldOpen_data()
    {
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("processLog");
        QTest::newRow("vanished") << u"Error: Unable to open file: %1"_s << u"No such file"_s;
        QTest::newRow("pipe") << u"Error: Unable to open file: %1"_s << u"Not a file"_s;
        QTest::newRow("200 MiB line")
            << u"Error: CSV file could not be parsed!\nCheck file syntax or column headers.\n\nExport from HelioWeb "
               "with the following format:\n- Date: MM-dd-yyyy\n- Time: 24h\n- Time zone: UTC\n- CSV separator: ; or ,"_s
            << u"The CSV file syntax is not correct"_s;
        QTest::newRow("over") << u"Error: All satellite prepass date(s) in this file have expired!"_s << QString();
    }

    void failedImportSaysSoAndRemembersWhatItCouldOpen()
    {
        QFETCH(const QString, error);
        QFETCH(const QString, processLog);
        const QByteArray fault = QTest::currentDataTag();
        const bool opened = !error.contains("%1");
        TxManager &tx = prepare(TxManager::PREPASS);
        const QString before = QUrl::fromLocalFile(m_path).toString();
        write({"A -5 00:10:00", "B 600 00:10:00"});
        tx.importPrepassData(before);
        tick(tx);
        m_path = m_bench->folder.filePath("chosen.csv");
        if (fault == "pipe") {
            QVERIFY(mkfifo(qPrintable(m_path), 0600) == 0);
        } else if (opened) {
            write({"A -700 00:10:00"});
            QVERIFY(fault == "over" || QFile::resize(m_path, 200LL * 1024 * 1024)); // takes no space on the disk
        }
        QSignalSpy completed(&tx, &TxManager::loadPrepassDataCompleted);
        QSignalSpy moved(&tx, &TxManager::nextPassIdxChanged);
        if (!processLog.isEmpty()) {
            expectCritical(QRegularExpression(processLog));
        }
        rusage usage{};
        const auto memory = [&usage] { return getrusage(RUSAGE_SELF, &usage), usage.ru_maxrss; };
        const auto used = memory(); // KiB
        const QString chosen = QUrl::fromLocalFile(m_path).toString();
        tx.importPrepassData(chosen);
        QVERIFY(memory() - used < 20L * 1024);
        QCOMPARE(completed.takeLast().at(0), opened ? error : error.arg(m_path));
        QCOMPARE(moved.count(), opened ? 1 : 0);
        QCOMPARE(tx.nextPassIdx(), opened ? 0 : 1);
        QCOMPARE(tx.prepassListModel()->rowCount(), opened ? 0 : 2);
        const auto remembered = [&tx] { return tx.saveSettings(), QSettings().value("Tx/csvFilePath").toString(); };
        QCOMPARE(remembered(), opened ? chosen : before);
        if (fault == "over") {
            tx.reloadPrepassData();
            QCOMPARE(completed.takeLast().at(0), error);
            QCOMPARE(remembered(), QString()); // one that the user has not chosen just now
        }
    }

    void walkKeepsTheTableInStepWithTheClock()
    {
        TxManager &tx = prepare(TxManager::PERIODIC);
        write({"E 3600 00:10:00", "D 30 none", "A -5 00:10:00", "B -4 00:00:10", "C -3 00:00:09"});
        tx.importPrepassData(m_path);
        const auto walk = [&](int offset) {
            m_bench->log.clear();
            tx.applyUtcOffset(offset, false);
            tick(tx);
            QString table;
            for (int row = 0; row < tx.prepassListModel()->rowCount(); ++row) {
                const QModelIndex index = tx.prepassListModel()->index(row);
                table += index.data(PrepassModel::SatelliteNameRole).toString();
                table += index.data(PrepassModel::IsActiveRole).toBool() ? "*" : "";
            }
            const QString available = m_bench->log.filter("available").join(' ').remove(" satellite(s) available");
            return QString("%1 %2 %3").arg(table).arg(tx.nextPassIdx()).arg(available);
        };
        QCOMPARE(walk(0), "A*BCDE 1 1"); // one a tick
        QCOMPARE(walk(0), "A*B*CDE 2 2");
        QCOMPARE(walk(0), "A*B*C*DE 3 3");
        tx.setSelectedProfile(TxManager::PREPASS);
        QCOMPARE(walk(60), "A*C*E 2 4 3 2"); // D came and went, C is looked at the next time
        QCOMPARE(walk(60), "A*E 1 1");
        tx.setSelectedProfile(TxManager::PREPASS_ON_MODULE);
        QCOMPARE(walk(3700), "A*E 0 ");
        tx.setSelectedProfile(TxManager::PERIODIC);
        tx.applyUtcOffset(0, true); // read anew
        QCOMPARE(walk(0), "A*BCDE 1 1");
        tx.clearPrepassData(false);
        QCOMPARE(walk(0), " 0 ");
        tx.reloadPrepassData();
        QCOMPARE(walk(0), "A*BCDE 1 1");
    }

    void tableGoesWithTheSessionAndComesBack()
    {
        ScriptedSession session;
        write({"A 600 00:10:00"});
        TxManager *tx = session.manager.tx();
        tx->importPrepassData(m_path);
        for (const ZepBoard::Module module : {ZepBoard::ZEP1, ZepBoard::TBX, ZepBoard::RANGER}) {
            session.manager.disconnect();
            QCOMPARE(tx->prepassListModel()->rowCount(), 0);
            QVERIFY(session.connectTo(module));
            QCOMPARE(tx->prepassListModel()->rowCount(), module == ZepBoard::RANGER ? 0 : 1);
        }
    }

    void passesTimeTheFirstTxAndTheNext_data()
    {
        QTest::addColumn<QList<qint64>>("passes"); // ms from now to the start, s of duration
        QTest::addColumn<QString>("sent");
        QTest::addColumn<int>("interval"); // ms; -1: not armed
        QTest::addColumn<QString>("error");
        using Passes = QList<qint64>;
        constexpr int farthest = std::numeric_limits<int>::max();
        QTest::newRow("no table") << Passes{} << "" << -1
                                  << "Error: No prepass data imported.\nPlease import data as a CSV file retrieved "
                                     "from HelioWeb.";
        QTest::newRow("too far") << Passes{farthest + qint64{1}, 30} << "0:0 flush" << -1
                                 << "Error: Next satellite pass date is too far from today!";
        QTest::newRow("not too far") << Passes{farthest, 30} << "0:2" << farthest << "";
        QTest::newRow("now") << Passes{0, 30} << "0:2" << 0 << "";
        QTest::newRow("begun, not walked") << Passes{-1, 30} << "0:2" << 0 << "";
        QTest::newRow("over, not walked") << Passes{-1, 0, 3600000, 30} << "0:2" << 3600000 << "";
        QTest::newRow("in a long pass") << Passes{-10000, 600} << "0A 0:3" << 60000 << "";
        QTest::newRow("ends, next near") << Passes{-10000, 30, 59999, 30} << "0A 0:3" << 60000 << "";
        QTest::newRow("ends in a minute") << Passes{-10000, 70, 90000, 30} << "0A 0:3" << 90000 << "";
        QTest::newRow("ends after a minute") << Passes{-10000, 71, 90000, 30} << "0A 0:3" << 60000 << "";
        QTest::newRow("ends, next later") << Passes{-10000, 30, 60001, 30} << "0A 0:3" << 60001 << "";
        QTest::newRow("later one ends") << Passes{-20000, 600, -10000, 30, 90000, 30} << "0A 0:3" << 90000 << "";
    }

    void passesTimeTheFirstTxAndTheNext()
    {
        QFETCH(const QList<qint64>, passes);
        TxManager &tx = prepare(TxManager::PREPASS, {"0A"});
        for (qsizetype i = 0; i < passes.size(); i += 2) {
            add(tx, tx.prepassListModel(), passes.at(i), static_cast<int>(passes.at(i + 1)));
            if (passes.at(i) < -1) {
                tick(tx);
            }
        }
        QSignalSpy error(&tx, &TxManager::txErrorOccured);
        tx.start(1);
        QTEST(sent(), "sent");
        QTEST(error.value(0).value(0).toString(), "error");
        QCOMPARE(tx.sequenceRunning(), error.isEmpty());
        QTEST(m_bench->scheduleTimer->remainingTime() < 0 ? -1 : m_bench->scheduleTimer->interval(), "interval");
    }

    void usedUpTableWaitsForTheLastAnswer_data()
    {
        QTest::addColumn<QString>("seen");
        QTest::newRow("answer") << "0A 0:3 0:2 0:0 flush";
        QTest::newRow("no answer") << "0A 0:3 0:0 flush";
        QTest::newRow("two answers after a repetition") << "0A 0:3 0:4 0:0 flush";
    }

    void usedUpTableWaitsForTheLastAnswer()
    {
        const QByteArray event = QTest::currentDataTag();
        TxManager &tx = prepare(TxManager::PREPASS, {"0A"});
        add(tx, tx.prepassListModel(), -10000, 30);
        tick(tx);
        if (event == "answer") {
            QTimer::singleShot(0, &tx, [&tx] { tx.onTxDone("0a"); });
        } else if (event == "two answers after a repetition") {
            tx.payloadListModel()->setRedundancy(0, 1);
            QTimer::singleShot(0, &tx, [&tx] { tx.onTxDone("0A"); });
        }
        QSignalSpy error(&tx, &TxManager::txErrorOccured);
        tx.start(2);
        tx.onTxDone("0A"); // after a repetition, from which the table's end is met; else nothing runs any more
        QCoreApplication::processEvents();
        QCOMPARE(m_bench->log.filter("COMPLETE").size(), event == "two answers after a repetition" ? 1 : 0);
        QTEST(sent(), "seen");
        QCOMPARE(error.count(), 1);
        QCOMPARE(error.value(0).value(0), "Error: No more prepass data to continue Tx scheduling.\nPlease import new "
                                          "data from HelioWeb.\nStopping sequence...");
        QVERIFY(!tx.sequenceRunning());
    }

    void stopInsideTheNextPassRequestLeavesNothingForAnotherProfile()
    {
        TxManager &tx = prepare(TxManager::PREPASS_ON_MODULE, {"0A"});
        m_bench->duringNextPass = [&tx] { tx.stop(), tx.setSelectedProfile(TxManager::PERIODIC); };
        tx.start(1);
        QCOMPARE(sent(), "flush nextpass 0:0 flush");
        QVERIFY(!m_bench->scheduleTimer->isActive());
        tx.setAckPending(false); // by the flush of a real device
        tx.start(1);
        QCOMPARE(sent(), "0A 0:3"); // at once: nothing counts as sent already
    }

    void modulesPassesCarryOnePayloadEach()
    {
        TxManager &tx = prepare(TxManager::PREPASS_ON_MODULE, {"0A", "0B"});
        PrepassModel *model = tx.prepassProfile()->nextPassModel();
        const QTimer *timer = m_bench->scheduleTimer;
        answerNextPass(100000);
        tx.payloadListModel()->setData(tx.payloadListModel()->index(0), true, PayloadModel::OptionAckRole);
        tx.start(1);
        QCOMPARE(sent(), "flush nextpass+ack");
        QTRY_VERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 100000);
        QCOMPARE(sent(), "0A 0:2");

        tx.applyUtcOffset(100, false);
        expire(tx); // the pass begins
        QVERIFY(model->getIsActive(0) && qAbs(timer->interval() - 300000) < 2000);
        answerNextPass(-1000); // under way already
        expire(tx);            // the pass ends without an answer
        QCOMPARE(timer->interval(), 0);
        expire(tx);
        QCOMPARE(sent(), "0:3 0:2 nextpass+ack 0:3");

        answerNextPass(100000);
        tx.onTxDone("0A");
        QTRY_COMPARE(timer->interval(), 100000); // queued, and the rest of the pass is not used
        QCOMPARE(sent(), "0:4 1:2 0B 1:2 1:2 nextpass");
        QVERIFY(tx.ackPending());
        expire(tx);
        tx.onTxDone("0B");
        QCOMPARE(sent(), "1:3 1:4");
        QVERIFY(!tx.ackPending() && !timer->isActive() && m_bench->log.last().contains("COMPLETE (1/1)"));
    }

    void answerCountsWhereverItComesInAModulesPass_data()
    {
        QTest::addColumn<QStringList>("payloads");
        QTest::addColumn<QString>("sent");
        QTest::newRow("last, inside the request at the end") << QStringList{"0A"} << "0:2 nextpass 0:4";
        QTest::newRow("next follows") << QStringList{"0A", "0B"} << "0:2 nextpass 0:4 1:2 0B 1:2";
        QTest::newRow("fewer repetitions, same pass") << QStringList{"0A", "0B"} << "0:4 1:2 0B 1:2 1:4";
        QTest::newRow("twice, same pass") << QStringList{"0A", "0B"} << "0:4 1:2 1:2 0B 1:2 1:4";
    }

    void answerCountsWhereverItComesInAModulesPass()
    {
        QFETCH(const QStringList, payloads);
        const bool inRequest = !QByteArray(QTest::currentDataTag()).contains("same pass");
        TxManager &tx = prepare(TxManager::PREPASS_ON_MODULE, payloads);
        tx.payloadListModel()->setRedundancy(0, 10);
        answerNextPass(100000);
        tx.start(1);
        QTRY_VERIFY(m_bench->scheduleTimer->isActive());
        expire(tx);
        m_bench->sent.clear();
        if (inRequest) {
            m_bench->duringNextPass = [&tx, answer = m_bench->duringNextPass] { answer(), tx.onTxDone("0A"); };
            expire(tx);
        } else {
            tx.onTxDone("0A");
        }
        if (QByteArray(QTest::currentDataTag()).contains("twice")) {
            tx.onTxDone("0A"); // before the module has the next payload
        }
        QTRY_COMPARE(m_bench->sent.contains("0B"), payloads.size() > 1);
        if (!inRequest) {
            tx.onTxDone("0B");
        }
        QTEST(sent(), "sent");
        const bool isComplete = payloads.size() == 1 || !inRequest;
        QCOMPARE(m_bench->log.filter("COMPLETE (1/1)").size(), isComplete ? 1 : 0);
        QCOMPARE(m_bench->scheduleTimer->isActive(), !isComplete);
        QCOMPARE(tx.ackPending(), !isComplete);
    }

    void payloadThatTheModuleDoesNotHaveIsQueuedAgain()
    {
        TxManager &tx = prepare(TxManager::PREPASS_ON_MODULE, {"0A"});
        answerNextPass(100000);
        m_bench->duringRequest = [&] { m_bench->accept = m_bench->sent.last() != "0A"; };
        tx.start(1);
        QTRY_VERIFY(m_bench->scheduleTimer->isActive());
        m_bench->duringRequest = [] {};
        m_bench->accept = true;
        const auto pass = [&](const auto &inside) {
            expire(tx);
            inside();
            m_bench->sent.clear();
            expire(tx);
            return sent();
        };
        tx.onTxDone("0A"); // of a Tx of an earlier run, or in a pass that this clock has not seen begin
        QVERIFY(tx.ackPending() && m_bench->log.filter("COMPLETE").isEmpty());
        QCOMPARE(pass([] {}), "0:2 0A 0:2 nextpass");
        QCOMPARE(pass([] {}), "0:2 nextpass");
        QCOMPARE(pass([&] { tx.onTxFailed(); }), "0:2 0A 0:2 nextpass");
        expire(tx);
        tx.onTxDone("0A");
        QVERIFY(!tx.ackPending() && m_bench->log.last().contains("COMPLETE (1/1)"));
    }

    void modulesPassThatIsOverIsAskedForAtEverLongerIntervals()
    {
        TxManager &tx = prepare(TxManager::PREPASS_ON_MODULE, {"0A"});
        PrepassModel *model = tx.prepassProfile()->nextPassModel();
        answerNextPass(100000);
        tx.start(1);
        QTRY_VERIFY(m_bench->scheduleTimer->isActive());
        m_bench->duringNextPass = [] {};
        tx.applyUtcOffset(86400, false); // the row stays: no request for a pass succeeds
        const auto pauses = [&](int count) {
            QString all;
            for (int asked = 0; asked < count; ++asked) {
                expire(tx);
                expire(tx);
                all += QString::number(m_bench->scheduleTimer->interval() / 1000) + ' ';
            }
            return all;
        };
        QCOMPARE(pauses(8), "0 1 2 4 8 10 10 10 ");
        answerNextPass(100000);
        QCOMPARE(pauses(1), "100 ");
        m_bench->duringNextPass = [] {};
        tx.applyUtcOffset(172800, false);
        QCOMPARE(pauses(2), "0 1 ");
        tx.applyUtcOffset(169200, false); // an hour back, and the pass is over still
        tick(tx);
        QVERIFY(m_bench->scheduleTimer->remainingTime() <= 1000);
        tx.stop();
        tx.setSelectedProfile(TxManager::PERIODIC);
        tick(tx); // the module's pass is no row of the table

        tx.setSelectedProfile(TxManager::PREPASS_ON_MODULE);
        m_bench->duringRequest = [&tx] { tx.stop(); }; // a reset inside the flush at the start
        tx.setAckPending(false);
        tx.start(1);
        m_bench->duringRequest = [] {};
        QVERIFY(!tx.ackPending());
        model->clear();
        QSignalSpy error(&tx, &TxManager::txErrorOccured);
        tx.start(1);
        QTRY_COMPARE(error.value(0).value(0), "Error: No satellite pass was computed/predicted!");
        QVERIFY(!tx.sequenceRunning() && !m_bench->scheduleTimer->isActive());
    }

    void clockIsTheMasterOfTheTimer()
    {
        const QTimer *timer = nullptr;
        const auto step = [&](TxManager &tx, int seconds) {
            tx.applyUtcOffset(seconds, false);
            tick(tx);
            QCoreApplication::processEvents();
            return (timer->remainingTime() + 500) / 1000;
        };
        TxManager &table = prepare(TxManager::PREPASS, {"0A"});
        timer = m_bench->scheduleTimer;
        add(table, table.prepassListModel(), 3600000, 600);
        table.start(1);
        QCOMPARE(step(table, 3590), 10);
        QCOMPARE(step(table, -3600), 7200);
        sent();
        step(table, 3601);
        QCOMPARE(sent(), "0A 0:3"); // in its pass

        TxManager &over = prepare(TxManager::PREPASS, {"0A"});
        timer = m_bench->scheduleTimer;
        add(over, over.prepassListModel(), 3600000, 600);
        over.start(1);
        step(over, 86400); // beyond the table
        QCOMPARE(sent(), "0:2 0:0 flush");

        TxManager &module = prepare(TxManager::PREPASS_ON_MODULE, {"0A"});
        timer = m_bench->scheduleTimer;
        answerNextPass(3600000, 600);
        module.start(1);
        QTRY_VERIFY(timer->isActive());
        QCOMPARE(step(module, 3590), 10);
        expire(module);
        write({"A 7200 00:10:00"});
        module.importPrepassData(m_path);
        QCOMPARE(step(module, 3700), 500); // still to the end of the pass
        sent();
        expire(module);
        QCOMPARE(sent(), "0:2 nextpass");

        TxManager &periodic = prepare(TxManager::PERIODIC, {"0A", "0B"});
        timer = m_bench->scheduleTimer;
        periodic.periodicProfile()->setRedundancy(1);
        periodic.start(1);
        QCOMPARE(step(periodic, 290), 300); // not before the answer
        periodic.onTxDone("0A");
        QCOMPARE(step(periodic, 290), 10);
        QCOMPARE(step(periodic, -3600), 10); // no interval gets longer
    }
};

QTEST_GUILESS_MAIN(TxPrepassTest)
#include "tst_txprepass.moc"
