// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LogFinder.h"
#include "LogModel.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

class TestLogModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsEveryLineWhileViewsAreToldInFewBatches()
    {
        constexpr int count = 100'000;
        LogModel model;
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QStringList expected;

        // A steady stream must not put the telling off for ever, and no line may wait for it.
        for (int line = 0; line < count; ++line) {
            expected.append(QStringLiteral("line %1").arg(line));
            model.append(expected.constLast());
            if (line % 1'000 == 0) {
                QCOMPARE(model.text().count(QLatin1Char('\n')), line);
                QTest::qWait(1);
            }
        }
        QCOMPARE(model.text(), expected.join(QLatin1Char('\n')));
        QVERIFY2(inserted.count() > 1, "nothing was shown before the stream ended");
        QTRY_COMPARE(model.rowCount(), count);
        QVERIFY2(inserted.count() < 200, qPrintable(QString::number(inserted.count())));
        QCOMPARE(model.index(count - 1).data(LogModel::ShownRole).toString(), expected.constLast());
    }

    void oldestTenthGivesWayBeyondTheLimit()
    {
        constexpr int limit = 1000;
        LogModel model(nullptr, limit);
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy dropped(&model, &LogModel::dropped);
        int next = 0;
        const auto fill = [&](int count) {
            for (; count > 0; --count) {
                model.append(QString::number(next++));
            }
            model.publish();
        };
        fill(limit);
        QCOMPARE(dropped.count(), 0);
        // One line too many; then more than two tenths in one batch, with the row that says so among the dropped.
        for (const auto &[count, replaced, gone, rows] : {std::tuple(1, 100, 100, 902), {350, 301, 400, 952}}) {
            fill(count);
            QCOMPARE(model.rowCount(), rows);
            QCOMPARE(dropped.takeFirst().at(0).toInt(), replaced);
            const QString said = model.index(0).data(LogModel::ShownRole).toString();
            QVERIFY2(said.startsWith(QString::number(gone) + QStringLiteral(" older lines were dropped")),
                     qPrintable(said));
            QCOMPARE(model.index(1).data(LogModel::ShownRole).toString(), QString::number(gone));
            QCOMPARE(model.index(rows - 1).data(LogModel::ShownRole).toString(), QString::number(next - 1));
            QCOMPARE(model.textBetween(0, 0, 2, 2),
                     said + QStringLiteral("\n%1\n").arg(gone) + QString::number(gone + 1).left(2));
            const QString text = model.text();
            QVERIFY(text.startsWith(said + QLatin1Char('\n')) && text.count(QLatin1Char('\n')) == rows - 1);
        }
        model.clear();
        fill(1);
        QCOMPARE(model.text(), QString::number(next - 1)); // nothing is missing here
    }

    void findFollowsWhatIsAppendedAndDropped()
    {
        LogModel model(nullptr, 1000);
        LogFinder finder;
        finder.setModel(&model);
        int next = 0;
        const auto fill = [&](int count) {
            for (; count > 0; --count, ++next) {
                model.append(next % 100 == 50 ? QStringLiteral("Hit %1").arg(next) : QString::number(next));
            }
            model.publish();
        };
        const auto current = [&] { return model.index(finder.currentRow()).data(LogModel::ShownRole).toString(); };
        finder.setPattern(QStringLiteral("hIT"));
        finder.setOrigin(500);
        fill(900);
        QTRY_VERIFY(!finder.isSearching());
        QCOMPARE(finder.count(), 9);
        QCOMPARE(current(), QStringLiteral("Hit 550"));
        finder.next();
        QCOMPARE(current(), QStringLiteral("Hit 650"));
        fill(350); // 300 rows make room
        QTRY_VERIFY(!finder.isSearching());
        QCOMPARE(finder.count(), 9);
        QCOMPARE(current(), QStringLiteral("Hit 650"));
        for (int hits = 0; hits < 6; ++hits) {
            finder.next();
        }
        QCOMPARE(current(), QStringLiteral("Hit 350")); // round the end
        finder.previous();
        QCOMPARE(current(), QStringLiteral("Hit 1150"));
        finder.setCaseSensitive(true);
        QTRY_VERIFY(!finder.isSearching());
        QCOMPARE(finder.count(), 0);
        finder.setPattern(QStringLiteral("1"));
        QVERIFY(finder.isSearching());
        model.clear();
        QTRY_VERIFY(!finder.isSearching());
        QVERIFY(finder.count() == 0 && finder.currentRow() == -1);
        QCOMPARE(finder.columnsIn(QStringLiteral("1a111")), (QList<int>{0, 2, 3, 4}));
    }

    void clearForgetsTheBatchUnderWay()
    {
        LogModel model;
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.append(QStringLiteral("shown"));
        model.publish();
        model.append(QStringLiteral("waiting"));
        model.clear();
        QCOMPARE(model.text(), QString());
        QCOMPARE(model.rowCount(), 0);
        model.append(QStringLiteral("after"));
        QTRY_COMPARE(model.rowCount(), 1);
        QCOMPARE(model.index(0).data(LogModel::ShownRole).toString(), QStringLiteral("after"));
    }

    void showsHarmfulTextHarmlessly()
    {
        const QString longest(LogModel::shownLength, QLatin1Char('x'));
        LogModel model;
        for (const auto &[line, shown] :
             {std::pair(QString::fromLatin1("a\0b\x1b[0mc\rd", 10), QStringLiteral(u"a\uFFFDb\uFFFD[0mc\uFFFDd")),
              {QStringLiteral(u"a\u202Eb"), QStringLiteral(u"a\uFFFDb")}, // right-to-left override
              {QStringLiteral(u"\u2029\uFFFC\u2028") + QChar(0xFDD0), QString(4, QChar::ReplacementCharacter)},
              {QStringLiteral(u"\t\né €"), QStringLiteral(u"\t\né €")},
              {longest, longest},
              {QString(1 << 20, QLatin1Char('x')), longest + QChar(0x2026)}}) {
            model.clear();
            model.append(line);
            model.publish();
            QCOMPARE(model.index(0).data(LogModel::ShownRole).toString(), shown);
            QCOMPARE(model.text(), line);
        }
    }

    void selectionGivesTheWholeTextBehindWhatIsShown()
    {
        LogModel model;
        const QString huge(1 << 20, QLatin1Char('x'));
        model.append(QStringLiteral("first"));
        model.append(huge);
        model.append(QString::fromLatin1("th\0rd", 5));
        QCOMPARE(model.textBetween(0, 3, 2, 4), QStringLiteral("st\n") + huge + QString::fromLatin1("\nth\0r", 5));
        QCOMPARE(model.textBetween(1, 0, 1, LogModel::shownLength), huge.left(LogModel::shownLength));
        QCOMPARE(model.textBetween(1, 0, 1, LogModel::shownLength + 1), huge);
        QCOMPARE(model.textBetween(0, 0, 99, LogModel::LineEnd), model.text());

        QClipboard *clipboard = QGuiApplication::clipboard();
        clipboard->setText(QStringLiteral("kept"));
        model.copyBetween(-1, 0, -1, 0);
        QCOMPARE(clipboard->text(), QStringLiteral("kept"));
        model.copyBetween(0, 1, 0, LogModel::LineEnd);
        QCOMPARE(clipboard->text(), QStringLiteral("irst"));
    }
};

QTEST_MAIN(TestLogModel)
#include "tst_logmodel.moc"
