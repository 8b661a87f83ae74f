// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Logger.h"
#include "PayloadModel.h"
#include "Program.h"
#include "TxManager.h"

#include <QClipboard>
#include <QStandardPaths>

// The page in a window that says itself which board and profile are selected; the transmission side behind it is the
// real one, with no device.
constexpr auto windowSource = R"(
    import QtQuick
    import "types" as T
    T.ApplicationWindow {
        property bool g_enableInput: true
        property bool g_importantTxOptionEnabled: false
        property bool g_periodicProfileSelected: !g_prepassProfileSelected
        property bool g_prepassOnModuleProfileSelected: false
        property bool g_prepassProfileSelected: false
        property bool g_rangerModuleSelected: false
        property bool g_tbxModuleSelected: false
        property bool g_zep1ModuleSelected: false
        property bool g_zep2ModuleSelected: !g_rangerModuleSelected
        property alias page: page
        mIsMainWindow: true
        visible: true
        width: 1350
        height: 850
        DashboardPage { id: page }
    })";

class tst_Dashboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void rxFrameTakesOnlyWhatAModulePassesOn_data();
    void rxFrameTakesOnlyWhatAModulePassesOn();
    void logStaysAtTheEndUnlessTheUserReadsAbove();
    void logTextIsSelectedAcrossRowsAndCopied();
    void editedMessageIsCheckedAtEachKeyAndKeptAtTheEnd_data();
    void editedMessageIsCheckedAtEachKeyAndKeptAtTheEnd();
    void optionsExcludeEachOtherAndReadOffInPrepass();
    void rowKeepsTheStatusThatItWasTold();
    void completedSequenceOffersResetOnce();
    void gridGrowsBeyond1600();
    void columnGoesWithItsLastPaneAndComesBack();
    void rangerHasNoTxAndRxPanes();

private:
    QQuickItem *find(const QString &name, QQuickItem *in = nullptr) const { return m_screen.find(name, "visible", in); }
    QString logs(const QString &frame) const { return evaluate(find(frame), "parent.parent.getLogs()").toString(); }
    QObject *listOf(const QString &frame) const { return find(frame)->property("mList").value<QObject *>(); }
    void click(const QString &name) { m_screen.click(name); }
    static QPoint centre(QQuickItem *item) { return Screen::centre(item); }
    static QVariant evaluate(QObject *scope, const QString &expression) { return Screen::evaluate(scope, expression); }

    QQmlApplicationEngine *m_engine = nullptr;
    ZepManager *m_manager = nullptr;
    PayloadModel *m_payloads = nullptr;
    Screen m_screen;
    QQuickWindow *m_window = nullptr;
    QObject *m_page = nullptr;
};

void tst_Dashboard::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QGuiApplication::setApplicationName("ZepGUI-dashboard-test");
    QGuiApplication::setOrganizationName("ZepGUI-test");
    QSettings().clear();
    registerQmlTypes();
}

void tst_Dashboard::init()
{
    m_engine = new QQmlApplicationEngine;
    connect(m_engine, &QQmlEngine::warnings, this, [](const QList<QQmlError> &warnings) {
        for (const QQmlError &warning : warnings) {
            QTest::qFail(qPrintable(warning.toString()), __FILE__, __LINE__);
        }
    });
    m_engine->loadData(windowSource, QUrl("qrc:/qml/window.qml"));
    QVERIFY(!m_engine->rootObjects().isEmpty());
    m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().constFirst());
    m_screen.window = m_window;
    m_page = m_window->property("page").value<QObject *>();
    m_manager = m_engine->singletonInstance<ZepManager *>(qmlTypeId("com.sarvane.qml", 1, 0, "ZepManager"));
    m_payloads = m_manager->tx()->payloadListModel();
    m_payloads->setAllowedSize({4, 8});
    m_manager->tx()->addPayloadItem("00000000");
    m_manager->tx()->addPayloadItem("00000001");
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    QTRY_COMPARE(find("P1") == nullptr ? 0.0 : find("P1")->scale(), 1.0); // the rows have grown to their size
}

void tst_Dashboard::cleanup()
{
    delete m_engine;
}

void tst_Dashboard::rxFrameTakesOnlyWhatAModulePassesOn_data()
{
    QTest::addColumn<QString>("log");
    QTest::addColumn<QString>("kept");
    QTest::newRow("command") << "[10:00:00:000] [APP] AT+ID=?"
                             << "";
    QTest::newRow("beacon") << "[10:00:00:000] [ZEP] +BC=55AA"
                            << "[10:00:00:000] 55AA";
    QTest::newRow("received") << "[10:00:00:000] [ZEP] +RX=01,02"
                              << "[10:00:00:000] 01,02";
    QTest::newRow("of a ranger") << "[10:00:00:000] [RNG] +BC=55AA"
                                 << "";
    QTest::newRow("twice") << "[10:00:00:000] [ZEP] +BC=55[ZEP] +BC=AA"
                           << "";
    QTest::newRow("no tag before it") << "[10:00:00:000] [ZEP] x+RX=01"
                                      << "";
    QTest::newRow("a beacon counts before what it holds") << "[10:00:00:000] [ZEP] +RX=01+BC=02"
                                                          << "";
}

void tst_Dashboard::rxFrameTakesOnlyWhatAModulePassesOn()
{
    QFETCH(QString, log);
    Q_EMIT m_manager->logger()->logCreated(log);
    QTEST(logs("RX lines"), "kept");
    QCOMPARE(logs("Log lines"), log);
    m_manager->logger()->clearLogs();
    QCOMPARE(logs("RX lines") + logs("Log lines"), QString());
}

void tst_Dashboard::logStaysAtTheEndUnlessTheUserReadsAbove()
{
    const auto log = [this](int count) {
        for (int line = 0; line < count; ++line) {
            // Rows of several heights, so that the end is not where an even height would put it.
            Q_EMIT m_manager->logger()->logCreated(QString("line %1 ").arg(line) + QString(line % 7 * 40, 'w'));
        }
    };
    QObject *list = listOf("Log lines");
    log(5'000);
    QTRY_COMPARE(list->property("count").toInt(), 5'000);
    QTRY_VERIFY(list->property("atYEnd").toBool());
    QVERIFY(evaluate(list, "itemAtIndex(count - 1) !== null").toBool());

    QQuickItem *lines = find("Log lines");
    QTest::mouseClick(m_window, Qt::LeftButton, {}, centre(lines));
    QTest::keyClick(m_window, Qt::Key_PageUp);
    const double reading = list->property("contentY").toDouble();
    QVERIFY(!list->property("atYEnd").toBool());
    log(100);
    QTRY_COMPARE(list->property("count").toInt(), 5'100);
    QCOMPARE(list->property("contentY").toDouble(), reading);
    QTest::keyClick(m_window, Qt::Key_End);
    log(100);
    QTRY_COMPARE(list->property("count").toInt(), 5'200);
    QTRY_VERIFY(list->property("atYEnd").toBool());

    // Back from another page it stands still: nothing travels unseen through a long log.
    m_page->setProperty("visible", false);
    log(100);
    m_page->setProperty("visible", true);
    QTRY_VERIFY(list->property("atYEnd").toBool());
    const QSignalSpy frames(m_window, &QQuickWindow::frameSwapped);
    QVERIFY2(!QTest::qWaitFor([&frames] { return frames.count() > 20; }, 1'000), "the window is drawn without end");

    QTest::keyClick(m_window, Qt::Key_Home);
    QTRY_VERIFY(list->property("atYBeginning").toBool());
}

void tst_Dashboard::logTextIsSelectedAcrossRowsAndCopied()
{
    for (const char *line : {"first", "second", "third"}) {
        Q_EMIT m_manager->logger()->logCreated(line);
    }
    QTRY_COMPARE(listOf("Log lines")->property("count").toInt(), 3);
    QQuickItem *lines = find("Log lines");
    const QPoint from = lines->mapToScene({10, 5}).toPoint();
    const QPoint to = find("third", lines)->mapToScene({2, 5}).toPoint();
    QTest::mousePress(m_window, Qt::LeftButton, {}, from);
    QTest::mouseMove(m_window, to);
    QTest::mouseRelease(m_window, Qt::LeftButton, {}, to);
    QTest::keySequence(m_window, QKeySequence::Copy);
    QCOMPARE(QGuiApplication::clipboard()->text(), "irst\nsecond\n");
    QCOMPARE(find("second", lines)->property("selectedText").toString(), "second");
    QCOMPARE(find("third", lines)->property("selectedText").toString(), "");

    // A line that no view has been told of is copied as well.
    Q_EMIT m_manager->logger()->logCreated("fourth");
    click("Select and copy all logs");
    QCOMPARE(QGuiApplication::clipboard()->text(), "first\nsecond\nthird\nfourth");
    QTRY_COMPARE(find("fourth", lines)->property("selectedText").toString(), "fourth");
}

void tst_Dashboard::editedMessageIsCheckedAtEachKeyAndKeptAtTheEnd_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("redWhileTyping");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("redAtTheEnd");
    QTest::newRow("good, lower case") << "aabbccdd" << false << "AABBCCDD"
                                      << "AA BB CC DD " << false;
    QTest::newRow("odd digits stay red") << "aabbccd" << true << "AABBCCD"
                                         << "AA BB CC D" << true;
    QTest::newRow("length not allowed") << "aabb" << true << "AABB"
                                        << "AA BB " << true;
    QTest::newRow("blanks are no digits") << "aa bb cc dd" << false << "AABBCCDD"
                                          << "AA BB CC DD " << false;
    QTest::newRow("other letters are not taken") << "aaxyzbbccdd" << false << "AABBCCDD"
                                                 << "AA BB CC DD " << false;
    QTest::newRow("empty restores") << "" << true << "00000000"
                                    << "00 00 00 00 " << false;
    QTest::newRow("blanks alone restore") << "  " << true << "00000000"
                                          << "00 00 00 00 " << false;
}

void tst_Dashboard::editedMessageIsCheckedAtEachKeyAndKeptAtTheEnd()
{
    QFETCH(QString, typed);
    QQuickItem *field = find("P0 message");
    const auto red = [field] { return field->property("color").value<QColor>() == QColor("red"); };
    QCOMPARE(field->property("text").toString(), "00 00 00 00 ");
    click("P0 message");
    QCOMPARE(field->property("text").toString(), "00000000");
    QTest::keySequence(m_window, QKeySequence::SelectAll);
    QTest::keyClick(m_window, Qt::Key_Delete);
    QVERIFY(red());
    for (const QChar key : typed) {
        QTest::keyClick(m_window, key.toLatin1());
    }
    QTEST(red(), "redWhileTyping");
    QCOMPARE(m_payloads->getMessage(0), "00000000");
    QTest::keyClick(m_window, Qt::Key_Tab);
    QTEST(m_payloads->getMessage(0), "stored");
    QTEST(field->property("text").toString(), "shown");
    QTEST(red(), "redAtTheEnd");
}

void tst_Dashboard::optionsExcludeEachOtherAndReadOffInPrepass()
{
    const auto stored = [this] { return m_payloads->getOptions(0); };
    const auto checked = [this](const QString &name) { return find(name)->property("checked").toBool(); };
    click("P0 downlink");
    QVERIFY(stored().optionMail && !stored().optionAck);
    QCOMPARE(find("P0 message")->property("color").value<QColor>(), QColor("red"));
    click("P0 ACK");
    QVERIFY(stored().optionAck && !stored().optionMail);
    QVERIFY(checked("P0 ACK") && !checked("P0 downlink"));

    m_window->setProperty("g_prepassProfileSelected", true);
    QVERIFY(!checked("P0 ACK") && stored().optionAck);
    QTest::mouseClick(m_window, Qt::LeftButton, {}, centre(find("P0 ACK")));
    QVERIFY(!checked("P0 ACK") && stored().optionAck);
    m_window->setProperty("g_prepassProfileSelected", false);
    QVERIFY(checked("P0 ACK"));
    click("P0 ACK");
    QVERIFY(!stored().optionAck);
    QVERIFY(find("P0 message")->property("color").value<QColor>() != QColor("red"));
}

void tst_Dashboard::rowKeepsTheStatusThatItWasTold()
{
    m_manager->tx()->start(1);
    m_payloads->setStatus(0, Payload::ACTIVE);
    QCOMPARE(m_payloads->getStatus(0), Payload::NONE);
    QVERIFY(find("P0 active"));
    m_payloads->setTxCount(0, 1);
    m_payloads->setAllowedSize({4});
    QVERIFY2(find("P0 active"), "a change of something else took the status away");
    QVERIFY(find("P0 message")->property("font").value<QFont>().bold());
    QVERIFY(!find("P0 message")->isEnabled() && find("P1 message")->isEnabled());
    m_payloads->setStatus(0, Payload::COMPLETE);
    QVERIFY(find("P0 complete") && !find("P0 active"));
    m_manager->tx()->stop();
    QVERIFY(!find("P0 complete"));
}

void tst_Dashboard::completedSequenceOffersResetOnce()
{
    m_manager->tx()->start(1);
    QVERIFY(find("Stop") && !find("Start") && !find("Transmission complete!"));
    QCOMPARE(evaluate(find("Tx payloads")->parentItem(), "root.countdown(363599)"), "00:59:59"); // 100 h 59 min 59 s
    QCOMPARE(evaluate(find("Tx payloads")->parentItem(), "root.countdown(3725)"), "01:02:05");
    Q_EMIT m_manager->tx()->sequenceCompleted();
    QVERIFY(find("Transmission complete!"));
    click("Reset");
    QVERIFY(!m_manager->tx()->sequenceRunning());
    QVERIFY(find("Start") && find("Repeat"));
    click("Start");
    QVERIFY2(find("Stop"), "the sequence before still counts as completed");
    m_manager->tx()->stop();
}

void tst_Dashboard::gridGrowsBeyond1600()
{
    m_window->setWidth(1600);
    QTRY_COMPARE(m_page->property("width").toInt(), 1600);
    QCOMPARE(m_page->property("columns").toInt(), 2);
    m_window->setWidth(1601);
    QTRY_COMPARE(m_page->property("columns").toInt(), 3);
    QCOMPARE(m_page->property("rows").toInt(), 1);
}

void tst_Dashboard::columnGoesWithItsLastPaneAndComesBack()
{
    QQuickItem *logLines = find("Log lines");
    QQuickItem *rxLines = find("RX lines");
    QQuickItem *expandLog = find("Expand window");
    // Below the logs: it gains their height.
    const QQuickItem *txView = find("Tx payloads")->parentItem()->parentItem();
    const double height = txView->height();
    Q_EMIT m_manager->logger()->logCreated("kept");
    QTest::mouseClick(m_window, Qt::LeftButton, {}, centre(expandLog));
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

void tst_Dashboard::rangerHasNoTxAndRxPanes()
{
    QVERIFY(find("Tx payloads") && find("RX commands") && find("pending state"));
    m_window->setProperty("g_rangerModuleSelected", true);
    QVERIFY(find("Log lines"));
    QVERIFY(!find("Tx payloads") && !find("RX commands") && !find("pending state"));
}

QTEST_MAIN(tst_Dashboard)
#include "tst_dashboard.moc"
