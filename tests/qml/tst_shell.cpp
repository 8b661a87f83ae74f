// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Program.h"

#include <QClipboard>
#include <QQmlComponent>
#include <QTimer>

using namespace Qt::StringLiterals;

// The real window on the real ZepManager, used by mouse; a scripted device stands at the far end of the line.
class TestShell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_ui = std::make_unique<Program>(); }
    void cleanup() { m_ui.reset(); }

    void unusableWindowSizeIsReplaced_data();
    void unusableWindowSizeIsReplaced();
    void windowSizeIsSavedOnlyAtARegularClose();
    void closingTheWindowEndsTheProgramWhateverIsOpen();

    void failedConnectionIsToldPlainlyAndForgotten();
    void basicModeNeverUsesAHiddenBaudRate();
    void welcomeGreetsTheFirstVisitorOnly();

    void sessionThatEndsUnderTheSettingsPageLandsOnTheConnectionPage();
    void disconnectDialogFollowsTheBoardAndWaits();
    void expandedViewComesBackWhenASerialErrorClosesItsWindow();
    void okInASerialErrorDuringTheWakeUpWaitIsSafe();
    void wakeUpDialogClosesWithTheWait_data();
    void wakeUpDialogClosesWithTheWait();

    void copyStripsWhiteSpaceAndKeepsTheTextBound();

private:
    void connectBoard(const QString &board);
    [[nodiscard]] QQuickItem *find(const QString &name) const { return m_ui->find(name); }
    [[nodiscard]] QQuickItem *bar() const { return m_ui->bar(); }
    [[nodiscard]] QQuickWindow *secondaryWindow() const;
    [[nodiscard]] QObject *settings() const { return m_ui->singleton("Settings", "Settings"); }
    void click(const QString &name) const { m_ui->click(name); }
    /// Does \a action as soon as a control called \a name shows, from inside whatever wait spins the event loop.
    void onceShown(const QString &name, const std::function<void()> &action);

    std::unique_ptr<Program> m_ui;
};

QQuickWindow *TestShell::secondaryWindow() const
{
    for (QWindow *window : QGuiApplication::allWindows()) {
        if (window != m_ui->window && window->isVisible()) {
            return qobject_cast<QQuickWindow *>(window);
        }
    }
    return nullptr;
}

void TestShell::onceShown(const QString &name, const std::function<void()> &action)
{
    auto *timer = new QTimer(m_ui->window);
    connect(timer, &QTimer::timeout, m_ui->window, [this, name, action, timer] {
        if (const QQuickItem *item = find(name); item && item->isEnabled() && item->opacity() == 1.0) {
            timer->stop();
            action();
        }
    });
    timer->start(10);
}

void TestShell::connectBoard(const QString &board)
{
    QSignalSpy connected(m_ui->manager, &ZepManager::connected);
    m_ui->manager->serialPort()->ports()->setStringList({m_ui->peer.path()}); // which disconnect() listed anew
    click(board);
    click(u"Connect"_s);
    QTRY_COMPARE(connected.count(), 1);
    QTRY_COMPARE(bar()->state(), u"dashboardPage"_s);
}

void TestShell::unusableWindowSizeIsReplaced_data()
{
    QTest::addColumn<QVariant>("width");
    QTest::addColumn<QVariant>("height");
    QTest::addColumn<QSize>("size");
    QTest::newRow("first start") << QVariant() << QVariant() << QSize(1350, 850);
    QTest::newRow("zero") << QVariant(0) << QVariant(0) << QSize(1350, 850);
    QTest::newRow("negative") << QVariant(-900) << QVariant(700) << QSize(1350, 700);
    QTest::newRow("text") << QVariant(u"wide"_s) << QVariant(u"high"_s) << QSize(1350, 850);
    QTest::newRow("beyond any screen") << QVariant(99999999) << QVariant(1e12) << QSize(1350, 850);
}

void TestShell::unusableWindowSizeIsReplaced()
{
    QFETCH(QVariant, width);
    QFETCH(QVariant, height);
    m_ui->stop();
    QSettings().setValue(u"windowWidth"_s, width);
    QSettings().setValue(u"windowHeight"_s, height);
    m_ui->start();
    QTEST(m_ui->window->size(), "size");
}

void TestShell::windowSizeIsSavedOnlyAtARegularClose()
{
    m_ui->window->resize(1000, 800);
    m_ui->stop();
    QCOMPARE(QSettings().value(u"windowWidth"_s, 1350).toInt(), 1350);
    m_ui->start();
    m_ui->window->resize(1000, 800);
    QTRY_COMPARE(m_ui->window->width(), 1000);
    m_ui->window->close();
    m_ui->stop();
    QCOMPARE(QSettings().value(u"windowWidth"_s).toInt(), 1000);
    QCOMPARE(QSettings().value(u"windowHeight"_s).toInt(), 800);
}

void TestShell::closingTheWindowEndsTheProgramWhateverIsOpen()
{
    onceShown(u"Please press wake up button"_s, [&] { m_ui->peer.say("RANGER -- BUTTON PUSHED"); });
    connectBoard(u"Ranger"_s);
    QTRY_VERIFY(!find(u"Please press wake up button"_s));
    click(u"Expand window"_s);
    QTRY_VERIFY(secondaryWindow());
    m_ui->peer.say("RANGER -- SLEEP");
    QTRY_VERIFY(!m_ui->manager->board()->isAwake());

    onceShown(u"Request ZEP info"_s, [&] { click(u"Request ZEP info"_s); });
    onceShown(u"Please press wake up button"_s, [&] { m_ui->window->close(); });
    QTimer::singleShot(5000, m_ui->window, [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

void TestShell::failedConnectionIsToldPlainlyAndForgotten()
{
    const QString port = u"/dev/<b>none</b>"_s;
    m_ui->manager->serialPort()->ports()->setStringList({port});
    click(u"ZEP2"_s);
    click(u"Connect"_s);
    const QString title = u"Unable to open port "_s + port;
    QTRY_VERIFY(find(title));
    QCOMPARE(find(title)->property("textFormat").toInt(), int(Qt::PlainText));
    QVERIFY(find(u"Connect"_s)->isEnabled());
    QCOMPARE(settings()->property("module").toInt(), int(ZepBoard::ZEP1));

    click(u"OK"_s);
    QTRY_VERIFY(!find(title));
    QVERIFY(!m_ui->manager->board());
    QCOMPARE(bar()->state(), u"connectionPage"_s);
}

void TestShell::basicModeNeverUsesAHiddenBaudRate()
{
    QVERIFY(!find(u"Baudrate"_s));
    click(u"Expert"_s);
    QTRY_VERIFY(find(u"Baudrate"_s));
    QTRY_VERIFY(find(u"More settings available!"_s));
    QQuickItem *box = m_ui->find(u"Baudrate"_s, "currentIndex");
    box->setProperty("currentIndex", 2);
    QCOMPARE(box->property("currentText").toString(), u"115200"_s);
    click(u"Basic"_s);
    QCOMPARE(box->property("currentText").toString(), u"Default"_s);
    QVERIFY(!box->isVisible());

    click(u"Expert"_s);
    m_ui->stop();
    m_ui->start();
    QVERIFY(find(u"Baudrate"_s));
    QVERIFY(!find(u"More settings available!"_s));
}

void TestShell::welcomeGreetsTheFirstVisitorOnly()
{
    const QString welcome =
        m_ui->singleton("Strings", "Strings")->property("tuto").value<QObject *>()->property("welcome").toString();
    QVERIFY(!find(welcome));
    m_ui->stop();
    QSettings().clear();
    m_ui->start();
    QTRY_VERIFY(find(welcome));
    QTest::mouseClick(m_ui->window, Qt::LeftButton, {}, QPoint(10, 400)); // outside of it
    QTRY_VERIFY(!find(welcome));
    m_ui->stop();
    m_ui->start();
    QVERIFY(!find(welcome));
    click(u"Hello!"_s);
    QTRY_VERIFY(find(welcome));
}

void TestShell::sessionThatEndsUnderTheSettingsPageLandsOnTheConnectionPage()
{
    connectBoard(u"ZEP2"_s);
    QCOMPARE(settings()->property("module").toInt(), int(ZepBoard::ZEP2));
    click(u"Settings"_s);
    QTRY_COMPARE(bar()->state(), u"settingsPage"_s);
    click(u"Return"_s);
    QTRY_COMPARE(bar()->state(), u"dashboardPage"_s);
    click(u"Settings"_s);
    QTRY_COMPARE(bar()->state(), u"settingsPage"_s);

    m_ui->manager->disconnect();
    QCOMPARE(bar()->state(), u"connectionPage"_s);
    QTRY_VERIFY(find(u"Connect"_s));
    click(u"Settings"_s);
    click(u"Return"_s);
    QCOMPARE(bar()->state(), u"connectionPage"_s);
    connectBoard(u"ZEP1"_s);
}

void TestShell::disconnectDialogFollowsTheBoardAndWaits()
{
    connectBoard(u"ZEP1"_s);
    click(u"Disconnect"_s);
    QTRY_VERIFY(find(u"Disconnect ZEP1?"_s));
    click(u"Cancel"_s);
    QTRY_VERIFY(!find(u"Disconnect ZEP1?"_s));
    QVERIFY(m_ui->manager->board());

    click(u"Disconnect"_s);
    // A transmission that is not answered is waited for; the dialog stays and cannot be pressed again.
    m_ui->manager->tx()->setAckPending(true);
    QTimer::singleShot(500, m_ui->manager, [this] {
        QVERIFY(find(u"Disconnect ZEP1?"_s));
        QVERIFY(!find(u"OK"_s)->isEnabled());
        m_ui->manager->tx()->setAckPending(false);
    });
    click(u"OK"_s);
    QTRY_VERIFY(!m_ui->manager->board());
    QTRY_VERIFY(!find(u"OK"_s));
    connectBoard(u"ZEP2"_s);
    click(u"Disconnect"_s);
    QTRY_VERIFY(find(u"Disconnect ZEP2?"_s));
    QVERIFY(find(u"OK"_s)->isEnabled());
}

void TestShell::expandedViewComesBackWhenASerialErrorClosesItsWindow()
{
    for (int round = 0; round < 2; ++round) {
        connectBoard(u"ZEP2"_s);
        click(u"Expand window"_s);
        QTRY_VERIFY(secondaryWindow());
        QQuickWindow *secondary = secondaryWindow();
        const QString view = secondary->title();
        QTRY_VERIFY(Screen{secondary}.find(view));
        QVERIFY(!find(view));

        Q_EMIT m_ui->manager->serialPort()->serialError(u"The cable is gone"_s);
        QTRY_VERIFY(!secondary->isVisible());
        QTRY_VERIFY(find(view));
        QTRY_VERIFY(find(u"The cable is gone"_s));
        QVERIFY(!Screen{secondary}.find(u"The cable is gone"_s));
        click(u"OK"_s);
        QTRY_COMPARE(bar()->state(), u"connectionPage"_s);
        QTRY_VERIFY(!find(u"OK"_s));
    }
}

void TestShell::okInASerialErrorDuringTheWakeUpWaitIsSafe()
{
    bool pressed = false;
    onceShown(u"Please press wake up button"_s, [&] {
        Q_EMIT m_ui->manager->serialPort()->serialError(u"The cable is gone"_s);
        onceShown(u"OK"_s, [&] {
            click(u"OK"_s);
            pressed = true;
        });
    });
    click(u"Ranger"_s);
    click(u"Connect"_s);
    QTRY_VERIFY(pressed);
    QVERIFY(!m_ui->manager->board());
    QTRY_VERIFY(!find(u"Cancel"_s));
    QTRY_VERIFY(!find(u"OK"_s));
    connectBoard(u"ZEP1"_s);
}

void TestShell::wakeUpDialogClosesWithTheWait_data()
{
    QTest::addColumn<bool>("woken");
    QTest::newRow("button pushed") << true;
    QTest::newRow("cancelled") << false;
}

void TestShell::wakeUpDialogClosesWithTheWait()
{
    QFETCH(bool, woken);
    QSignalSpy connected(m_ui->manager, &ZepManager::connected);
    onceShown(u"Please press wake up button"_s, [&] {
        if (woken) {
            m_ui->peer.say("RANGER -- BUTTON PUSHED");
        } else {
            click(u"Cancel"_s);
        }
    });
    click(u"Ranger"_s);
    click(u"Connect"_s);
    QTRY_VERIFY(!find(u"Please press wake up button"_s));
    QCOMPARE(connected.count(), int(woken));
    QTRY_COMPARE(find(u"Unable to contact RANGER"_s) != nullptr, !woken);
}

void TestShell::copyStripsWhiteSpaceAndKeepsTheTextBound()
{
    QQmlComponent component(m_ui->engine.get());
    component.setData("import QtQuick\n"
                      "import \"qrc:/qml/types\" as T\n"
                      "Item { property string key: '00 11\\t22'; property alias shown: edit.text\n"
                      "  T.TextEdit { id: edit; text: parent.key }\n"
                      "  T.CopyToolButton { objectName: 'copy'; inputTextEdit: edit } }",
                      QUrl(u"qrc:/qml/test.qml"_s));
    const std::unique_ptr<QObject> root(component.create());
    QVERIFY2(root, qPrintable(component.errorString()));
    qobject_cast<QQuickItem *>(root.get())->setParentItem(m_ui->window->contentItem());
    QMetaObject::invokeMethod(root->findChild<QQuickItem *>(u"copy"_s), "clicked");
    QCOMPARE(QGuiApplication::clipboard()->text(), u"001122"_s);
    QCOMPARE(root->property("shown").toString(), u"00 11\t22"_s);
    root->setProperty("key", u"33 44"_s);
    QCOMPARE(root->property("shown").toString(), u"33 44"_s);
}

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
