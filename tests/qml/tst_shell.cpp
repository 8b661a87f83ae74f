// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "QmlTypes.h"
#include "ScriptedPeer.h"
#include "ZepManager.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;

// The real window on the real ZepManager, used by mouse; a scripted device stands at the far end of the line.
class TestShell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

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
    void start();
    void stop();
    void connectBoard(const QString &board);
    [[nodiscard]] QQuickItem *find(const QString &name, QQuickWindow *window = nullptr) const;
    [[nodiscard]] QQuickItem *bar() const { return m_window->property("header").value<QQuickItem *>(); }
    [[nodiscard]] QQuickWindow *secondaryWindow() const;
    [[nodiscard]] QObject *settings() const { return singleton("Settings", "Settings"); }
    [[nodiscard]] QObject *singleton(const char *module, const char *type) const
    {
        return m_engine->singletonInstance<QObject *>(qmlTypeId(module, 1, 0, type));
    }
    void click(const QString &name);
    /// Does \a action as soon as a control called \a name shows, from inside whatever wait spins the event loop.
    void onceShown(const QString &name, const std::function<void()> &action);

    QTemporaryDir m_dir;
    std::unique_ptr<ScriptedPeer> m_peer;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow *m_window = nullptr;
    ZepManager *m_manager = nullptr;
};

void TestShell::initTestCase()
{
    QGuiApplication::setOrganizationName(u"Sarvane"_s);
    QGuiApplication::setApplicationName(u"ZepGUI"_s);
    QVERIFY(m_dir.isValid());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_dir.path());
    registerQmlTypes();
}

void TestShell::init()
{
    QTest::failOnWarning(QRegularExpression(u"qrc:|QML"_s));
    QSettings().clear();
    QSettings().setValue(u"firstVisit"_s, false);
    m_peer = std::make_unique<ScriptedPeer>();
    connect(m_peer.get(), &ScriptedPeer::requested, this, [this] { m_peer->say("+OK"); });
    start();
}

void TestShell::cleanup()
{
    stop();
    m_peer.reset();
}

void TestShell::start()
{
    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_engine->rootContext()->setContextProperty(u"QT_VERSION"_s, QString::fromLatin1(qVersion()));
    m_engine->load(QUrl(u"qrc:/qml/main.qml"_s));
    QVERIFY(!m_engine->rootObjects().isEmpty());
    m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().first());
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    m_manager = qobject_cast<ZepManager *>(singleton("com.sarvane.qml", "ZepManager"));
    m_manager->serialPort()->ports()->setStringList({m_peer->path()});
}

void TestShell::stop()
{
    m_engine.reset();
    m_window = nullptr;
}

QQuickItem *TestShell::find(const QString &name, QQuickWindow *window) const
{
    QList<QQuickItem *> pending{(window ? window : m_window)->contentItem()};
    while (!pending.isEmpty()) {
        QQuickItem *item = pending.takeLast();
        if (!item->isVisible()) {
            continue;
        }
        const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
        // A control without an own Accessible.name bears its text, which offscreen nobody asks it to publish.
        if ((accessible && accessible->text(QAccessible::Name) == name) || item->property("text") == name) {
            return item;
        }
        pending += item->childItems();
    }
    return nullptr;
}

QQuickWindow *TestShell::secondaryWindow() const
{
    for (QWindow *window : QGuiApplication::allWindows()) {
        if (window != m_window && window->isVisible()) {
            return qobject_cast<QQuickWindow *>(window);
        }
    }
    return nullptr;
}

void TestShell::click(const QString &name)
{
    const auto *pages = bar()->property("stackView").value<QObject *>();
    QTRY_VERIFY2(find(name) && find(name)->isEnabled() && !pages->property("busy").toBool(), qPrintable(name));
    const QQuickItem *item = find(name);
    const QPoint place = item->mapToScene(item->boundingRect().center()).toPoint();
    QTest::mouseClick(m_window, Qt::LeftButton, {}, place);
}

void TestShell::onceShown(const QString &name, const std::function<void()> &action)
{
    auto *timer = new QTimer(m_window);
    connect(timer, &QTimer::timeout, m_window, [this, name, action, timer] {
        if (const QQuickItem *item = find(name); item && item->isEnabled() && item->opacity() == 1.0) {
            timer->stop();
            action();
        }
    });
    timer->start(10);
}

void TestShell::connectBoard(const QString &board)
{
    QSignalSpy connected(m_manager, &ZepManager::connected);
    m_manager->serialPort()->ports()->setStringList({m_peer->path()}); // which disconnect() listed anew
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
    stop();
    QSettings().setValue(u"windowWidth"_s, width);
    QSettings().setValue(u"windowHeight"_s, height);
    start();
    QTEST(m_window->size(), "size");
}

void TestShell::windowSizeIsSavedOnlyAtARegularClose()
{
    m_window->resize(1000, 800);
    stop();
    QCOMPARE(QSettings().value(u"windowWidth"_s, 1350).toInt(), 1350);
    start();
    m_window->resize(1000, 800);
    QTRY_COMPARE(m_window->width(), 1000);
    m_window->close();
    stop();
    QCOMPARE(QSettings().value(u"windowWidth"_s).toInt(), 1000);
    QCOMPARE(QSettings().value(u"windowHeight"_s).toInt(), 800);
}

void TestShell::closingTheWindowEndsTheProgramWhateverIsOpen()
{
    onceShown(u"Please press wake up button"_s, [&] { m_peer->say("RANGER -- BUTTON PUSHED"); });
    connectBoard(u"Ranger"_s);
    QTRY_VERIFY(!find(u"Please press wake up button"_s));
    click(u"Expand window"_s);
    QTRY_VERIFY(secondaryWindow());
    m_peer->say("RANGER -- SLEEP");
    QTRY_VERIFY(!m_manager->board()->isAwake());

    onceShown(u"Request ZEP info"_s, [&] { click(u"Request ZEP info"_s); });
    onceShown(u"Please press wake up button"_s, [&] { m_window->close(); });
    QTimer::singleShot(5000, m_window, [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

void TestShell::failedConnectionIsToldPlainlyAndForgotten()
{
    const QString port = u"/dev/<b>none</b>"_s;
    m_manager->serialPort()->ports()->setStringList({port});
    click(u"ZEP2"_s);
    click(u"Connect"_s);
    const QString title = u"Unable to open port "_s + port;
    QTRY_VERIFY(find(title));
    QCOMPARE(find(title)->property("textFormat").toInt(), int(Qt::PlainText));
    QVERIFY(find(u"Connect"_s)->isEnabled());
    QCOMPARE(settings()->property("module").toInt(), int(ZepBoard::ZEP1));

    click(u"OK"_s);
    QTRY_VERIFY(!find(title));
    QVERIFY(!m_manager->board());
    QCOMPARE(bar()->state(), u"connectionPage"_s);
}

void TestShell::basicModeNeverUsesAHiddenBaudRate()
{
    QVERIFY(!find(u"Baudrate"_s));
    click(u"Expert"_s);
    QTRY_VERIFY(find(u"Baudrate"_s));
    QTRY_VERIFY(find(u"More settings available!"_s));
    QQuickItem *box = find(u"Baudrate"_s);
    box->setProperty("currentIndex", 2);
    QCOMPARE(box->property("currentText").toString(), u"115200"_s);
    click(u"Basic"_s);
    QCOMPARE(box->property("currentText").toString(), u"Default"_s);
    QVERIFY(!box->isVisible());

    click(u"Expert"_s);
    stop();
    start();
    QVERIFY(find(u"Baudrate"_s));
    QVERIFY(!find(u"More settings available!"_s));
}

void TestShell::welcomeGreetsTheFirstVisitorOnly()
{
    const QString welcome =
        singleton("Strings", "Strings")->property("tuto").value<QObject *>()->property("welcome").toString();
    QVERIFY(!find(welcome));
    stop();
    QSettings().clear();
    start();
    QTRY_VERIFY(find(welcome));
    QTest::mouseClick(m_window, Qt::LeftButton, {}, QPoint(10, 400)); // outside of it
    QTRY_VERIFY(!find(welcome));
    stop();
    start();
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

    m_manager->disconnect();
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
    QVERIFY(m_manager->board());

    click(u"Disconnect"_s);
    // A transmission that is not answered is waited for; the dialog stays and cannot be pressed again.
    m_manager->tx()->setAckPending(true);
    QTimer::singleShot(500, m_manager, [this] {
        QVERIFY(find(u"Disconnect ZEP1?"_s));
        QVERIFY(!find(u"OK"_s)->isEnabled());
        m_manager->tx()->setAckPending(false);
    });
    click(u"OK"_s);
    QTRY_VERIFY(!m_manager->board());
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
        QTRY_VERIFY(find(view, secondary));
        QVERIFY(!find(view));

        Q_EMIT m_manager->serialPort()->serialError(u"The cable is gone"_s);
        QTRY_VERIFY(!secondary->isVisible());
        QTRY_VERIFY(find(view));
        QTRY_VERIFY(find(u"The cable is gone"_s));
        QVERIFY(!find(u"The cable is gone"_s, secondary));
        click(u"OK"_s);
        QTRY_COMPARE(bar()->state(), u"connectionPage"_s);
        QTRY_VERIFY(!find(u"OK"_s));
    }
}

void TestShell::okInASerialErrorDuringTheWakeUpWaitIsSafe()
{
    bool pressed = false;
    onceShown(u"Please press wake up button"_s, [&] {
        Q_EMIT m_manager->serialPort()->serialError(u"The cable is gone"_s);
        onceShown(u"OK"_s, [&] {
            click(u"OK"_s);
            pressed = true;
        });
    });
    click(u"Ranger"_s);
    click(u"Connect"_s);
    QTRY_VERIFY(pressed);
    QVERIFY(!m_manager->board());
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
    QSignalSpy connected(m_manager, &ZepManager::connected);
    onceShown(u"Please press wake up button"_s, [&] {
        if (woken) {
            m_peer->say("RANGER -- BUTTON PUSHED");
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
    QQmlComponent component(m_engine.get());
    component.setData("import QtQuick\n"
                      "import \"qrc:/qml/types\" as T\n"
                      "Item { property string key: '00 11\\t22'; property alias shown: edit.text\n"
                      "  T.TextEdit { id: edit; text: parent.key }\n"
                      "  T.CopyToolButton { objectName: 'copy'; inputTextEdit: edit } }",
                      QUrl(u"qrc:/qml/test.qml"_s));
    const std::unique_ptr<QObject> root(component.create());
    QVERIFY2(root, qPrintable(component.errorString()));
    qobject_cast<QQuickItem *>(root.get())->setParentItem(m_window->contentItem());
    QMetaObject::invokeMethod(root->findChild<QQuickItem *>(u"copy"_s), "clicked");
    QCOMPARE(QGuiApplication::clipboard()->text(), u"001122"_s);
    QCOMPARE(root->property("shown").toString(), u"00 11\t22"_s);
    root->setProperty("key", u"33 44"_s);
    QCOMPARE(root->property("shown").toString(), u"33 44"_s);
}

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
