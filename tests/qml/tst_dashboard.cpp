// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LogModel.h"
#include "Logger.h"
#include "PayloadModel.h"
#include "Program.h"
#include "TxManager.h"

#include <QClipboard>

// The page of a ZEP2 with two payloads, of four bytes or eight.
class tst_Dashboard : public ProgramTest
{
    Q_OBJECT

    QString logs(const QString &frame) const
    {
        return Screen::evaluate(find(frame), "parent.parent.getLogs()").toString();
    }
    QObject *listOf(const QString &frame) const { return find(frame)->property("mList").value<QObject *>(); }
    bool isRed(const QString &field) const { return find(field)->property("color").value<QColor>() == QColor("red"); }
    void log(const QString &line) const { Q_EMIT m_ui->manager->logger()->logCreated(line); }

    QQuickWindow *m_window = nullptr;
    PayloadModel *m_payloads = nullptr;

private Q_SLOTS:
    void init()
    {
        m_ui = std::make_unique<Program>();
        m_ui->connectTo(ZepBoard::ZEP2);
        m_window = m_ui->window;
        m_payloads = m_ui->tx()->payloadListModel();
        m_payloads->setAllowedSize({4, 8});
        m_ui->tx()->addPayloadItem("00000000");
        m_ui->tx()->addPayloadItem("00000001");
        m_ui->manager->logger()->clearLogs();
        QTRY_COMPARE(find("P1") == nullptr ? 0.0 : find("P1")->scale(), 1.0); // the rows have grown to their size
    }
    void cleanup() { m_ui.reset(); }

    void rxFrameTakesOnlyWhatAModulePassesOn()
    {
        for (const auto &[said, kept] : {std::pair("[10:00:00:000] [APP] AT+ID=?", ""),
                                         {"[10:00:00:000] [ZEP] +BC=55AA", "[10:00:00:000] 55AA"},
                                         {"[10:00:00:000] [ZEP] +RX=01,02", "[10:00:00:000] 01,02"},
                                         {"[10:00:00:000] [RNG] +BC=55AA", ""},
                                         {"[10:00:00:000] [ZEP] +BC=55[ZEP] +BC=AA", ""},
                                         {"[10:00:00:000] [ZEP] x+RX=01", ""},
                                         // a beacon counts before what it holds
                                         {"[10:00:00:000] [ZEP] +RX=01+BC=02", ""}}) {
            log(said);
            QCOMPARE(logs("RX lines"), kept);
            QCOMPARE(logs("Log lines"), said);
            m_ui->manager->logger()->clearLogs();
            QCOMPARE(logs("RX lines") + logs("Log lines"), QString());
        }
        for (const auto &[pane, left] : {std::pair("RX commands", "[ZEP] +RX=01"), {"Misc / Logs", ""}}) {
            log("[ZEP] +RX=01");
            clickOn(find("Clear all logs", find(pane)->parentItem()));
            QCOMPARE(logs("RX lines") + logs("Log lines"), left);
        }
    }

    void logStaysAtTheEndUnlessTheUserReadsAbove()
    {
        QObject *list = listOf("Log lines");
        const auto fill = [this, list](int count) {
            const int before = list->property("count").toInt();
            for (int line = 0; line < count; ++line) {
                // Rows of several heights, so that the end is not where an even height would put it.
                log(QString("line %1 ").arg(line) + QString(line % 7 * 40LL, 'w'));
            }
            QTRY_COMPARE(list->property("count").toInt(), before + count);
        };
        fill(5'000);
        QTRY_VERIFY(list->property("atYEnd").toBool());
        QVERIFY(Screen::evaluate(list, "itemAtIndex(count - 1) !== null").toBool());

        clickOn(find("Log lines"));
        QTest::keyClick(m_window, Qt::Key_PageUp);
        const double reading = list->property("contentY").toDouble();
        QVERIFY(!list->property("atYEnd").toBool());
        fill(100);
        QCOMPARE(list->property("contentY").toDouble(), reading);
        QTest::keyClick(m_window, Qt::Key_End);
        fill(100);
        QTRY_VERIFY(list->property("atYEnd").toBool());

        // Back from another page it stands still: nothing travels unseen through a long log.
        click("Settings");
        fill(100);
        click("Return");
        QTRY_VERIFY(list->property("atYEnd").toBool());
        click("Log lines"); // at rest
        const QSignalSpy frames(m_window, &QQuickWindow::frameSwapped);
        QVERIFY2(!QTest::qWaitFor([&frames] { return frames.count() > 5; }, 1'000), "the window is drawn without end");

        QTest::keyClick(m_window, Qt::Key_Home);
        QTRY_VERIFY(list->property("atYBeginning").toBool());
    }

    void batchThatEndsInAWrappedLineIsShownToItsEnd()
    {
        QObject *list = listOf("Log lines");
        int rows = 0;
        for (const int width : {1350, 1700}) {
            m_window->setWidth(width);
            for (int batch = 0; batch < 20; ++batch) {
                for (int line = 0; line < 20; ++line, ++rows) {
                    log(QString("short %1").arg(rows));
                }
                log(QString("long %1 ").arg(rows++) + QString("word ").repeated(60));
                QTRY_COMPARE(list->property("count").toInt(), rows);
                const QVariant below = Screen::evaluate(
                    list, "(last => last ? last.y + last.height - contentY - height : 999)(itemAtIndex(count - 1))");
                QVERIFY2(below.toDouble() < 1,
                         qPrintable(QString("%1 px below at %2").arg(below.toDouble()).arg(batch)));
            }
        }
    }

    void findGoesFromHitToHitAndTheEndIsFollowedAfterwards()
    {
        QObject *list = listOf("Log lines");
        for (int line = 0; line < 300; ++line) {
            log(line % 100 == 50 ? QString("row %1 Needle and needle").arg(line) : QString("row %1").arg(line));
        }
        QTRY_COMPARE(list->property("count").toInt(), 300);
        const auto marks = [&](int row) {
            return Screen::evaluate(list, QString("Array.from(itemAtIndex(%1)?.children ?? [])"
                                                  ".filter(child => child.modelData !== undefined).length")
                                              .arg(row))
                .toInt();
        };
        const auto key = [this](Qt::Key code, Qt::KeyboardModifiers with = {}) {
            QTest::keyClick(m_window, code, with);
        };
        clickOn(find("Log lines"));
        QTest::keySequence(m_window, QKeySequence::Find);
        QTRY_VERIFY(find("Find in the log") && find("Find in the log")->hasActiveFocus());
        for (const char letter : {'n', 'e', 'e', 'd', 'l', 'e'}) {
            QTest::keyClick(m_window, letter);
        }
        QTRY_VERIFY(find("3 of 3")); // the last one, since none is behind what showed
        QTRY_COMPARE(marks(250), 2);
        QVERIFY(!list->property("atYEnd").toBool());
        QTRY_VERIFY(find("Jump to latest"));
        key(Qt::Key_F3);
        QTRY_VERIFY(find("1 of 3") && marks(50) == 2);
        key(Qt::Key_F3, Qt::ShiftModifier);
        QTRY_VERIFY(find("3 of 3"));
        key(Qt::Key_Return);
        log("row 300 needle"); // the view stays at the hit
        QTRY_COMPARE(marks(50), 2);
        QTRY_VERIFY(find("1 of 4"));
        click("Match case");
        QTRY_VERIFY(find("4 of 4") && marks(300) == 1);
        click("Previous hit");
        QTRY_VERIFY(find("3 of 4") && marks(250) == 1);
        click("Jump to latest");
        QTRY_VERIFY(list->property("atYEnd").toBool() && !find("Jump to latest"));
        find("Find in the log")->forceActiveFocus();
        key(Qt::Key_Escape);
        QTRY_VERIFY(!find("Find in the log") && find("Log lines")->hasActiveFocus());
        QCOMPARE(find("Log lines")->y(), 0); // in the place of the bar
        QCOMPARE(marks(300), 0);
        log("row 301");
        QTRY_COMPARE(list->property("count").toInt(), 302);
        QVERIFY(list->property("atYEnd").toBool());
    }

    void droppedLinesMoveNeitherTheReaderNorTheSelection()
    {
        QObject *list = listOf("Log lines");
        auto *model = list->property("model").value<LogModel *>();
        int next = 0;
        const auto fill = [&](int count) {
            for (; count > 0; --count, ++next) {
                model->append(QString("line %1 ").arg(next) + QString(next % 7 * 40LL, 'w'));
            }
            model->publish();
        };
        // The line at the upper edge and how far it stands above it.
        const auto reading = [list] {
            return Screen::evaluate(list, "(item => item.shown + ' ' + Math.round(contentY - item.y))"
                                          "(itemAt(1, contentY))")
                .toString();
        };
        const auto copied = [this] {
            QGuiApplication::clipboard()->clear();
            QTest::keySequence(m_window, QKeySequence::Copy);
            return QGuiApplication::clipboard()->text();
        };
        fill(LogModel::defaultLimit);
        QTRY_VERIFY(list->property("atYEnd").toBool());
        QQuickItem *lines = find("Log lines");
        clickOn(lines);
        QTest::keyClick(m_window, Qt::Key_PageUp);
        QTest::keyClick(m_window, Qt::Key_Up);
        QTest::mousePress(m_window, Qt::LeftButton, {}, lines->mapToScene({30, 5}).toPoint());
        QTest::mouseMove(m_window, lines->mapToScene({40, 80}).toPoint());
        QTest::mouseRelease(m_window, Qt::LeftButton, {}, lines->mapToScene({40, 80}).toPoint());
        const QString selection = copied();
        QVERIFY(selection.contains("\nline 9999"));
        const QString place = reading();
        for (const int count : {1, 100'000}) { // the first and the next time
            fill(count);
            QCOMPARE(list->property("count").toInt(), model->rowCount());
            QCoreApplication::processEvents();
            QCOMPARE(reading(), place);
            QCOMPARE(copied(), selection);
        }
        QTest::keyClick(m_window, Qt::Key_PageUp); // and one reads on from there
        QTest::keyClick(m_window, Qt::Key_PageDown);
        QCOMPARE(reading(), place);

        // Of a selection whose beginning is dropped the rest stays. A user who was reading there is taken to the top.
        QTest::keyClick(m_window, Qt::Key_Home);
        QTRY_VERIFY(list->property("atYBeginning").toBool());
        QTest::keyClick(m_window, Qt::Key_PageDown);
        Screen::evaluate(lines, "select(5, 0, 100002, 11)");
        fill(100'000);
        QTRY_COMPARE(reading().section("; ", 0, 0), "300000 older lines were dropped here");
        QCOMPARE(copied().section('\n', 2), "line 300001");
        Screen::evaluate(lines, "select(5, 0, 100, 10)");
        QTest::keyClick(m_window, Qt::Key_End);
        fill(100'000);
        QTRY_VERIFY(list->property("atYEnd").toBool());
        QVERIFY(Screen::evaluate(list, "itemAtIndex(count - 1) !== null").toBool());
        QCOMPARE(copied(), "");
    }

    void logTextIsSelectedAcrossRowsAndCopied()
    {
        for (const char *line : {"first", "second", "third"}) {
            log(line);
        }
        QTRY_COMPARE(listOf("Log lines")->property("count").toInt(), 3);
        QQuickItem *lines = find("Log lines");
        const auto selected = [&](const char *line) { return find(line, lines)->property("selectedText").toString(); };
        const QPoint to = find("third", lines)->mapToScene({2, 5}).toPoint();
        QTest::mousePress(m_window, Qt::LeftButton, {}, lines->mapToScene({10, 5}).toPoint());
        QTest::mouseMove(m_window, to);
        QTest::mouseRelease(m_window, Qt::LeftButton, {}, to);
        QTest::keySequence(m_window, QKeySequence::Copy);
        QCOMPARE(QGuiApplication::clipboard()->text(), "irst\nsecond\n");
        QVERIFY(selected("second") == "second" && selected("third").isEmpty());

        // A line that no view has been told of is copied as well.
        log("fourth");
        click("Select and copy all logs");
        QCOMPARE(QGuiApplication::clipboard()->text(), "first\nsecond\nthird\nfourth");
        QTRY_COMPARE(selected("fourth"), "fourth");
    }

    void secondExportStartsWhereTheFirstDid()
    {
        const QDir documents(m_ui->folder.filePath("docs")); // and not in the working directory
        QVERIFY(documents.mkpath("."));
        QQuickItem *view = find("Misc / Logs")->parentItem();
        Screen::evaluate(view, "exportDialog.mFolder = 'file://" + documents.path() + "'");
        for (const char *name : {"first.log", "second.log", "third.log"}) {
            click("Export logs/AT commands");
            QTRY_VERIFY(find("File name"));
            QQuickItem *field = find("File name")->parentItem()->childItems().at(1);
            QVERIFY(field->property("acceptableInput").isValid());
            field->forceActiveFocus();
            QTest::keySequence(m_window, QKeySequence::SelectAll);
            for (const char *key = name; *key != 0; ++key) {
                QTest::keyClick(m_window, *key);
            }
            QTest::keyClick(m_window, Qt::Key_Tab);
            click("Save");
            QTRY_VERIFY2(QFile::exists(documents.filePath(name)), name);
            QTRY_VERIFY(!find("File name"));
        }
    }

    void editedMessageIsCheckedAtEachKeyAndKeptAtTheEnd()
    {
        for (const auto &[typed, redWhileTyping, stored, shown, redAtTheEnd] :
             {std::tuple("aabbccd", true, "AABBCCD", "AA BB CC D", true), // odd digits
              {"aabb", true, "AABB", "AA BB ", true},                     // a length that is not allowed
              {"aa bb cc dd", false, "AABBCCDD", "AA BB CC DD ", false},
              {"aaxyzbbccdd", false, "AABBCCDD", "AA BB CC DD ", false}, // other letters are not taken
              {"", true, "00000000", "00 00 00 00 ", false},             // which restores
              {"  ", true, "00000000", "00 00 00 00 ", false}}) {
            m_ui->enter("P0 message", "00000000");
            QTest::keyClick(m_window, Qt::Key_Tab);
            QCOMPARE(m_ui->text("P0 message"), "00 00 00 00 ");
            click("P0 message");
            QCOMPARE(m_ui->text("P0 message"), "00000000");
            m_ui->enter("P0 message", typed);
            QCOMPARE(isRed("P0 message"), redWhileTyping);
            QCOMPARE(m_payloads->getMessage(0), "00000000");
            QTest::keyClick(m_window, Qt::Key_Tab);
            QCOMPARE(m_payloads->getMessage(0), stored);
            QCOMPARE(m_ui->text("P0 message"), shown);
            QCOMPARE(isRed("P0 message"), redAtTheEnd);
        }
    }

    void optionsExcludeEachOtherAndReadOffInPrepass()
    {
        const auto stored = [this] { return m_payloads->getOptions(0); };
        click("P0 downlink");
        QVERIFY(stored().optionMail && !stored().optionAck && isRed("P0 message"));
        click("P0 ACK");
        QVERIFY(stored().optionAck && !stored().optionMail && !m_ui->checked("P0 downlink"));

        m_ui->tx()->setSelectedProfile(TxManager::PREPASS);
        QVERIFY(!m_ui->checked("P0 ACK") && stored().optionAck);
        clickOn(find("P0 ACK"));
        QVERIFY(!m_ui->checked("P0 ACK") && stored().optionAck);
        m_ui->tx()->setSelectedProfile(TxManager::PERIODIC);
        QVERIFY(m_ui->checked("P0 ACK"));
        click("P0 ACK");
        QVERIFY(!stored().optionAck && !isRed("P0 message"));
    }

    void rowKeepsTheStatusThatItWasTold()
    {
        m_ui->tx()->start(1);
        m_payloads->setStatus(0, Payload::ACTIVE);
        QCOMPARE(m_payloads->getStatus(0), Payload::NONE);
        QVERIFY(find("P0 active"));
        m_payloads->setTxCount(0, 1);
        m_payloads->setAllowedSize({4});
        QVERIFY2(find("P0 active"), "a change of something else took the status away");
        QVERIFY(find("P0 message")->property("font").value<QFont>().bold());
        QVERIFY(!m_ui->enabled("P0 message") && m_ui->enabled("P1 message"));
        m_payloads->setStatus(0, Payload::COMPLETE);
        QVERIFY(find("P0 complete") && !find("P0 active"));
        // 100 h 59 min 59 s
        QCOMPARE(Screen::evaluate(find("Tx payloads")->parentItem(), "root.countdown(363599)"), "00:59:59");
        m_ui->peer.say("+TX=0,00000000"); // or the end of the session would wait for it
        QTRY_VERIFY(!m_ui->tx()->ackPending());
        m_ui->tx()->stop();
        QVERIFY(!find("P0 complete"));
    }

    void clickDuringAWaitIsNoStop()
    {
        m_ui->answers["AT+ATXRP=0"] = {};
        connect(
            &m_ui->peer, &ScriptedPeer::requested, this,
            [this](const QString &request) {
                if (request == "AT+ATXRP=0") {
                    click("Stop"); // by someone who meant to click on Start twice
                    m_ui->peer.say("+OK");
                }
            },
            Qt::QueuedConnection);
        click("Start");
        QVERIFY(m_ui->tx()->sequenceRunning() && m_ui->tx()->ackPending());
        QVERIFY(m_ui->manager->isInputHeld()); // a click that is delivered now was made during the wait
        QTRY_VERIFY(!m_ui->manager->isInputHeld());
        m_ui->peer.say("+TX=0,00000000");
        QTRY_VERIFY(!m_ui->tx()->ackPending());
        Q_EMIT m_ui->tx()->sequenceCompleted();
        QTRY_VERIFY(find("Reset"));
        expectCritical("ZEP ASSERT! main.c:1");
        m_ui->peer.say("+ASSERT=main.c:1"); // ends the sequence as a click would
        QTRY_VERIFY(find("Start"));
        click("Start");
        QTRY_VERIFY(find("Stop"));
        m_ui->peer.say("+TX=0,00000000");
        QTRY_VERIFY(!m_ui->tx()->ackPending());
        click("Stop");
        QTRY_VERIFY(!m_ui->tx()->sequenceRunning());
    }

    void payloadsAreFromOneToSixteen()
    {
        for (int row = 2; row < 15; ++row) {
            m_ui->tx()->addPayloadItem({});
        }
        click("Add");
        QCOMPARE(m_payloads->rowCount(), 16);
        QTRY_VERIFY(!m_ui->enabled("Add") && m_ui->enabled("Start"));
        while (m_payloads->rowCount() > 0) {
            m_payloads->remove(0);
        }
        QTRY_VERIFY(m_ui->enabled("Add") && !m_ui->enabled("Start"));
    }

    void gridGrowsBeyond1600()
    {
        QObject *page = m_ui->bar()->property("dashboardPage").value<QObject *>();
        const int margins = m_window->width() - page->property("width").toInt();
        for (const auto &[width, columns] : {std::pair(1600, 2), {1601, 3}}) {
            m_window->setWidth(width + margins);
            QTRY_COMPARE(page->property("width").toInt(), width);
            QCOMPARE(page->property("columns").toInt(), columns);
        }
    }

    void columnGoesWithItsLastPaneAndComesBack()
    {
        QQuickItem *logLines = find("Log lines");
        QQuickItem *rxLines = find("RX lines");
        QQuickItem *expandLog = find("Expand window");
        // Below the logs: it gains their height.
        const QQuickItem *txView = find("Tx payloads")->parentItem()->parentItem();
        const double height = txView->height();
        log("kept");
        clickOn(expandLog);
        QQuickWindow *logWindow = logLines->window();
        QVERIFY(logWindow != m_window && logWindow->isVisible());
        QVERIFY(find("RX lines") && !expandLog->isEnabled());
        click("Expand window"); // of what is now the first view in the page
        QQuickWindow *rxWindow = rxLines->window();
        QVERIFY(rxWindow != m_window && !find("RX commands"));
        QTRY_VERIFY(txView->height() > 1.5 * height);

        rxWindow->close();
        QCOMPARE(rxLines->window(), m_window);
        QVERIFY(find("RX lines") && !find("Log lines"));
        logWindow->close();
        QVERIFY(find("Log lines"));
        QTRY_VERIFY(expandLog->isEnabled());
        QCOMPARE(logs("Log lines"), "kept");
        QTRY_COMPARE(txView->height(), height);
    }
};

QTEST_MAIN(tst_Dashboard)
#include "tst_dashboard.moc"
