// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QSignalSpy>

#include "Aborts.h"
#include "TxBench.h"

/// The engine of the sequences under the profile PERIODIC. The timers' intervals are read, then cut short.
class TxSequenceTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TxBench> m_bench;

    TxManager &prepare(const QStringList &messages, uchar redundancy)
    {
        TxManager &tx = m_bench->create();
        tx.periodicProfile()->setRedundancy(redundancy);
        for (const QString &message : messages) {
            tx.addPayloadItem(message);
        }
        return tx;
    }

    /// Lets the schedule timer run out and waits for the request that this makes.
    [[nodiscard]] bool next()
    {
        const qsizetype before = m_bench->sent.size();
        if (m_bench->scheduleTimer->isActive()) {
            m_bench->scheduleTimer->start(0);
        }
        return m_bench->scheduleTimer->isActive() && QTest::qWaitFor([&] { return m_bench->sent.size() > before; });
    }

private Q_SLOTS:
    void init() { m_bench = std::make_unique<TxBench>(); }

    void redundantStateEndsTheProgram()
    {
        TxManager &tx = prepare({"0A"}, 2);
        const QByteArray source = "src/TxManager";
        verifyAborts("profile", source, "Invalid Tx profile value",
                     [&] { tx.setSelectedProfile(static_cast<TxManager::Profile>(3)); });
        tx.start(1);
        verifyAborts("second start", source, "m_sequenceRunning updated with a redundant state", [&] { tx.start(1); });
        verifyAborts("Tx while an answer is out", source, "m_ackPending updated with a redundant state",
                     [&] { (void)next(); });
    }

    void malformedPayloadStopsBeforeItsTurn()
    {
        TxManager &tx = prepare({"0A"}, 1);
        QStringList order;
        connect(&tx, &TxManager::txErrorOccured, this, [&](const QString &error) { order << error; });
        connect(&tx, &TxManager::sequenceRunningChanged, this, [&] { order << (tx.sequenceRunning() ? "on" : "off"); });
        connect(&tx, &TxManager::sequenceStopped, this, [&] { order << "stopped"; });
        tx.modulationModel()->setModulation(ModulationModel::SHRA4);
        const QString text = "Payload P0 (%1) is not correctly formatted.\r\nLength must be 3 bytes\r\n"
                             "(minus two bytes if ack or downlink options are enabled).";
        tx.start(3);
        QCOMPARE(order, QStringList({"on", text.arg("0A"), "off", "stopped"}));
        QCOMPARE(m_bench->log, QStringList({"--- Tx SEQUENCE START (x3) ---", "--- Tx SEQUENCE STOP/RESET ---"}));

        tx.payloadListModel()->setData(tx.payloadListModel()->index(0), "0A0A0A", PayloadModel::MessageRole);
        tx.addPayloadItem("0B");
        tx.start(1);
        m_bench->duringRequest = [&tx] { tx.setAckPending(false); }; // a device whose queue is emptied
        tx.onTxDone("0A0A0A"); // the next one is bad, the text names the current one
        m_bench->duringRequest = [] {};
        QCOMPARE(order.mid(4), QStringList({"on", text.arg("0A0A0A"), "off", "stopped"}));
        QVERIFY(!tx.ackPending());

        tx.payloadListModel()->setData(tx.payloadListModel()->index(1), "0B0B0B", PayloadModel::MessageRole);
        tx.start(1);
        tx.onTxDone("0A0A0A");
        tx.payloadListModel()->setData(tx.payloadListModel()->index(1), "0B", PayloadModel::MessageRole); // in the gap
        m_bench->scheduleTimer->start(0);
        QTRY_COMPARE(order.size(), 12);
        QVERIFY(order.at(9).startsWith("Payload P1 (0B) is not correctly"));
        QCOMPARE(m_bench->sent.join(' '), "flush 0A0A0A flush 0A0A0A flush");
    }

    void refusedOrFailedTxSpendsItsCount()
    {
        TxManager &tx = prepare({"0A"}, 3);
        m_bench->accept = false;
        tx.start(2);
        m_bench->accept = true;
        QVERIFY(next());
        tx.onTxFailed();
        tx.onTxFailed();
        QVERIFY(!tx.ackPending());
        QVERIFY(next());
        tx.onTxFailed(); // the last of a repetition: the next repetition follows
        for (int count = 0; count < 2; ++count) {
            QVERIFY(next());
            tx.onTxFailed();
        }
        m_bench->accept = false;
        QVERIFY(next());
        QVERIFY(!m_bench->scheduleTimer->isActive() && tx.sequenceRunning());
        QCOMPARE(m_bench->log.mid(1),
                 QStringList({"Unable to write Tx command", "--- Tx SEQUENCE COMPLETE (1/2) ---",
                              "Unable to write Tx command", "--- Tx SEQUENCE COMPLETE (2/2) ---"}));
    }

    void stopInsideARequestSendsNothingMore()
    {
        TxManager &tx = prepare({"0A", "0B"}, 1);
        m_bench->duringRequest = [&tx] { tx.stop(); }; // a device that resets while the request waits
        tx.start(1);
        m_bench->duringRequest = [] {};
        QVERIFY(!m_bench->scheduleTimer->isActive() && !tx.ackPending());
        tx.start(1);
        QCOMPARE(m_bench->sent.join(' '), "0A flush 0A");
    }

    void answerCountsOnlyWhileAwaited()
    {
        TxManager &tx = prepare({"0A", "0B"}, 1);
        tx.stop(); // nothing runs: no flush, no line
        tx.payloadListModel()->setData(tx.payloadListModel()->index(0), true, PayloadModel::OptionAckRole);
        m_bench->duringRequest = [&tx] { tx.onTxDone("0A"); }; // before the request has returned
        tx.start(1);
        m_bench->duringRequest = [] {};
        tx.onTxDone("0a");
        tx.onTxDone("0a"); // a second one
        QVERIFY(next());
        tx.stop();
        QVERIFY(m_bench->lastOptions.optionAck); // those of the first payload: the reset comes before the flush
        QVERIFY(tx.ackPending() && tx.timeUntilNextTx() == 0);
        tx.onTxDone("0B");
        QVERIFY(!tx.ackPending());
        QCOMPARE(m_bench->sent.join(' '), "0A 0B flush");
        QCOMPARE(m_bench->log, QStringList({"--- Tx SEQUENCE START (x1) ---", "Data 0A successfully transmitted! (1/1)",
                                            "--- Tx SEQUENCE STOP/RESET ---"}));
    }

    void timetableFollowsTheProfile_data()
    {
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<uchar>("redundancy");
        QTest::addColumn<QString>("timetable");
        QTest::newRow("two payloads") << QStringList{"0A", "0B"} << uchar{2}
                                      << "0A 60 0A 300 0B 60 0B (1/2) 300 0A 60 0A 300 0B 60 0B (2/2)";
        QTest::newRow("one payload") << QStringList{"0A"} << uchar{3}
                                     << "0A 60 0A 60 0A (1/2) 300 0A 60 0A 60 0A (2/2)";
        QTest::newRow("no repetition") << QStringList{"0A", "0B"} << uchar{1} << "0A 300 0B (1/2) 300 0A 300 0B (2/2)";
    }

    void timetableFollowsTheProfile()
    {
        QFETCH(const QStringList, messages);
        QFETCH(const uchar, redundancy);
        QFETCH(const QString, timetable);
        TxManager &tx = prepare(messages, redundancy);
        const QTimer *timer = m_bench->scheduleTimer;
        QSignalSpy completed(&tx, &TxManager::sequenceCompleted);
        QStringList seen;
        connect(&m_bench->logger, &Logger::logCreated, this,
                [&](const QString &line) { seen << line.section("COMPLETE ", 1).section(' ', 0, 0); });
        tx.start(2);
        do {
            seen << m_bench->sent.last();
            const bool armed = timer->isActive();
            tx.onTxDone(QString()); // no data: "could not be sent", and counts all the same
            QVERIFY(m_bench->log.contains("Data " + m_bench->sent.last() + " could not be sent"));
            QCOMPARE(armed, seen.last().isEmpty()); // the last Tx of a repetition arms nothing, its answer does
            if (timer->isActive()) {
                seen << QString::number(timer->interval() / 1000);
                QVERIFY(qAbs(tx.timeUntilNextTx() - timer->interval() / 1000) <= 1);
            }
        } while (completed.isEmpty() && next());
        seen.removeAll(QString());
        QCOMPARE(seen.join(' '), timetable);
        QCOMPARE(completed.count(), 1);
        QVERIFY(tx.sequenceRunning() && !tx.ackPending() && !timer->isActive());
        QTRY_COMPARE(tx.timeUntilNextTx(), 1); // the countdown runs on until stop()
        tx.stop();
        tx.start(1);
        QCOMPARE(m_bench->sent.last(), "0A");
    }

    void viewsSeeEachStateAndAPayloadAddedDuringTheRun()
    {
        TxManager &tx = prepare({"0A"}, 2);
        QStringList seen;
        m_bench->recordStates(seen);
        connect(&tx, &TxManager::currentIndexUpdated, this, [&](uchar row) { seen << QString("-> %1").arg(int{row}); });
        tx.start(2);
        tx.addPayloadItem("0B");
        for (const char *data : {"0A", "0A", "0B"}) {
            tx.onTxDone(data);
            QVERIFY(next());
        }
        tx.onTxDone("0B");
        QCOMPARE(seen.join(' '), "0:3 0:2 0:3 0:4 1:2 -> 1 1:3 1:2 1:3 1:4 0:0 1:0 0:2 -> 0");
    }
};

QTEST_GUILESS_MAIN(TxSequenceTest)
#include "tst_txsequence.moc"
