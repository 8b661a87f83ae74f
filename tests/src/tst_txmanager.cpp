// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QFile>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include "PrepassProfile.h"
#include "TxBench.h"

namespace {
struct StoppedClock : Clock
{
    QDateTime now;
    [[nodiscard]] QDateTime utcNow() const override { return now; }
};
} // namespace

class TxManagerTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TxBench> m_bench;

private Q_SLOTS:
    void init() { m_bench = std::make_unique<TxBench>(); }

    void numbersWrittenByHandReadAsTheDefault()
    {
        const auto numbers = [](const TxManager &tx) {
            return QList<int>{tx.selectedProfile(), tx.periodicProfile()->period(), tx.periodicProfile()->redundancy(),
                              tx.periodicProfile()->delay()};
        };
        const QList<int> defaults{TxManager::PERIODIC, 5, 4, 60};
        QCOMPARE(numbers(m_bench->create()), defaults); // a first start
        const QStringList list{"1", "2"};
        for (const QVariant &stored : {QVariant("PREPASS"), QVariant(-1), QVariant(256), QVariant("4294967297"),
                                       QVariant(list), QVariant(0), QVariant(3)}) {
            QSettings store;
            for (const char *key : {"profile", "Periodic/period", "Periodic/redundancy", "Periodic/delay"}) {
                store.setValue(QString("Tx/") + key, stored);
            }
            // Three is no profile.
            QCOMPARE(numbers(m_bench->create()),
                     stored == QVariant(3) ? QList<int>({TxManager::PERIODIC, 3, 3, 3}) : defaults);
        }
    }

    void settingsKeepEveryPayloadBehindAGap()
    {
        QSettings store;
        store.setValue("Tx/csvFilePath", "file:///passes.csv");
        store.setValue("Tx/Prepass/latitude", 43.5);
        store.setValue("Payloads/msg0", "0a");
        store.setValue("Payloads/msg2", "02");                       // behind a gap
        store.setValue("Payloads/msg10", QStringList({"0A", "0B"})); // an unquoted comma
        TxManager &tx = m_bench->create();
        tx.setSelectedProfile(TxManager::PREPASS);
        tx.periodicProfile()->setDelay(255);
        tx.prepassProfile()->setPosition({43.5, -170.25});
        tx.prepassProfile()->setConfig({.predictionDuration = 9, .minElevation = 12.5, .minPassDuration = 7});
        tx.prepassProfile()->setRedundancy(6);
        tx.payloadListModel()->remove(0);
        tx.saveSettings();
        const TxManager &again = m_bench->create();
        QStringList messages;
        for (uchar row = 0; row < again.payloadListModel()->rowCount(); ++row) {
            messages << again.payloadListModel()->getMessage(row);
        }
        QCOMPARE(messages, QStringList({"02", "0A,0B"}));
        QCOMPARE(again.selectedProfile(), TxManager::PREPASS);
        QCOMPARE(int{again.periodicProfile()->delay()}, 255);
        QCOMPARE(store.value("Tx/csvFilePath"), "file:///passes.csv");
        const PrepassProfile &prepass = *again.prepassProfile();
        QCOMPARE(QVariantList({prepass.position().latitude, prepass.position().longitude,
                               prepass.config().predictionDuration, prepass.config().minElevation,
                               prepass.config().minPassDuration, prepass.redundancy()}),
                 QVariantList({43.5, -170.25, uchar{9}, 12.5, uchar{7}, uchar{6}}));
        for (const char *bad : {"text", "nan", "90.5", "-inf"}) {
            store.setValue("Tx/Prepass/minElevation", bad);
            QCOMPARE(m_bench->create().prepassProfile()->config().minElevation, 5.0);
        }
    }

    void radioConfigurationOfAnotherSizeIsRefused()
    {
        TxManager &tx = m_bench->create();
        QSignalSpy request(&tx, &TxManager::setRadioConfRequest);
        QFile file(m_bench->folder.filePath("block é.bin"));
        const QString url = QUrl::fromLocalFile(file.fileName()).toString();
        tx.importRadioConfFile(url); // missing
        for (const int size : {15, 17, 16}) {
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(size, '\xAB')) == size);
            file.close();
            tx.importRadioConfFile(url);
        }
        QCOMPARE(m_bench->log, QStringList(3, "Radio configuration file is not valid (should be 16 bytes long)!"));
        QCOMPARE(request.count(), 1);
        QCOMPARE(request.at(0).at(0).toByteArray(), QByteArray("ab").repeated(16));
    }

    void clockMovesByMoreThanASecondOnly()
    {
        for (const auto &[seconds, word, completions] :
             {std::tuple(3599, "", 1), {3602, "updated", 0}, {-86400, "updated", 1}, {0, "restored", 0}}) {
            TxManager &tx = m_bench->create();
            tx.applyUtcOffset(3600, false);
            m_bench->log.clear();
            QSignalSpy completed(&tx, &TxManager::loadPrepassDataCompleted);
            tx.applyUtcOffset(seconds, completions != 0);
            const bool moves = qstrlen(word) > 0;
            QVERIFY(qAbs(QDateTime::currentDateTimeUtc().secsTo(tx.utcDateTime()) - (moves ? seconds : 3600)) <= 1);
            QCOMPARE(m_bench->log.value(0), moves ? QString("UTC time %1 (%2)").arg(word, tx.utcTime()) : QString());
            QCOMPARE(completed.count(), completions);
        }
    }

    void clockRunsWithItsOffset()
    {
        TxManager &tx = m_bench->create();
        QStringList lines;
        connect(&m_bench->logger, &Logger::logCreated, this, [&](const QString &line) { lines << line; });
        tx.setCustomUtcTime("2031-03-05T23:58:30Z");
        QCOMPARE(tx.utcTime().left(17), "Wed Mar 5, 23:58:");
        QVERIFY2(lines.value(0).startsWith("[23:58:"), qPrintable(lines.value(0))); // the log follows
        const QDateTime before = tx.utcDateTime();
        QTRY_VERIFY(before < tx.utcDateTime());
        QVERIFY(before.secsTo(tx.utcDateTime()) < 5);
        tx.setCustomUtcTime("yesterday"); // no date: the clock follows the computer again
        QVERIFY(qAbs(QDateTime::currentDateTimeUtc().secsTo(tx.utcDateTime())) <= 1);
    }

    void clockGivenItsOwnTimeDoesNotMove()
    {
        StoppedClock clock;
        Clock::install(&clock);
        const auto restore = qScopeGuard([] { Clock::install(nullptr); });
        for (const int offset : {3600, -3600}) {
            TxManager &tx = m_bench->create();
            tx.applyUtcOffset(offset, false);
            m_bench->log.clear();
            for (int fraction = 0; fraction < 1000; fraction += 111) {
                for (int age = 0; age <= 1000; age += 125) { // of the time that is shown, which is cut to the second
                    clock.now = QDateTime({2026, 1, 7}, {12, 0}, Qt::UTC).addMSecs(fraction);
                    QMetaObject::invokeMethod(&tx, "onUtcTimeRefreshOver");
                    clock.now = clock.now.addMSecs(age);
                    tx.setCustomUtcTime(tx.utcDateTime().toString(Qt::ISODate));
                }
            }
            QCOMPARE(m_bench->log, QStringList());
        }
    }

    void redundancyFollowsTheProfile()
    {
        TxManager &tx = m_bench->create();
        PayloadModel *model = tx.payloadListModel();
        const auto redundancies = [model] { return QList<int>{model->getRedundancy(0), model->getRedundancy(1)}; };
        tx.periodicProfile()->setRedundancy(7);
        tx.addPayloadItem("0A");
        tx.addPayloadItem("0B");
        QSignalSpy changed(model, &PayloadModel::dataChanged);
        model->setData(model->index(1), true, PayloadModel::OptionImportantRole);
        QCOMPARE(changed.value(0).value(2).value<QList<int>>(), QList<int>{PayloadModel::RedundancyRole});
        QCOMPARE(redundancies(), (QList<int>{7, 10}));
        tx.setSelectedProfile(TxManager::PERIODIC);
        QCOMPARE(redundancies(), (QList<int>{7, 7}));
        tx.setSelectedProfile(TxManager::PREPASS);
        QCOMPARE(redundancies(), (QList<int>{4, 10}));
        tx.periodicProfile()->setRedundancy(3); // whatever profile is selected
        QCOMPARE(redundancies(), (QList<int>{3, 3}));
        tx.addPayloadItem("0C");
        QCOMPARE(int{model->getRedundancy(2)}, 4);
    }
};

QTEST_GUILESS_MAIN(TxManagerTest)
#include "tst_txmanager.moc"
