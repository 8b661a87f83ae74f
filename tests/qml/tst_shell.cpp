// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Program.h"

#include <QDesktopServices>
#include <QDir>
#include <QFontMetricsF>
#include <QTimer>

using namespace Qt::StringLiterals;

const QString wakeUp = u"Please press wake up button"_s;

// The real window on the real ZepManager, used by mouse; a scripted device stands at the far end of the line.
class TestShell : public ProgramTest
{
    Q_OBJECT

    QList<QUrl> m_opened; ///< by the desktop

    [[nodiscard]] QString page() const { return m_ui->bar()->state(); }
    [[nodiscard]] QObject *settings() const { return m_ui->singleton("Settings", "Settings"); }

    [[nodiscard]] QQuickWindow *secondaryWindow() const
    {
        for (QWindow *window : QGuiApplication::allWindows()) {
            if (window != m_ui->window && window->isVisible()) {
                return qobject_cast<QQuickWindow *>(window);
            }
        }
        return nullptr;
    }

    /// Does \a action as soon as a control called \a name shows, from inside whatever wait spins the event loop.
    void onceShown(const QString &name, const std::function<void()> &action)
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

    void connectBoard(const QString &board)
    {
        // The list is the system's again since disconnect().
        m_ui->manager->serialPort()->ports()->setStringList({m_ui->peer.path()});
        click(board);
        click(u"Connect"_s);
        QTRY_COMPARE(page(), u"dashboardPage"_s);
    }

private Q_SLOTS:
    void init() { m_ui = std::make_unique<Program>(); }
    void cleanup() { m_ui.reset(); }
    void open(const QUrl &url) { m_opened.append(url); }

    void errorOfASequenceCanBeAnswered()
    {
        Program &program = *m_ui;
        program.connectTo(ZepBoard::ZEP1);
        const QString error = QString("a line of an error ").repeated(3) + "\r\nanother\r\nand another";
        Q_EMIT program.tx()->txErrorOccured(error);
        QTRY_VERIFY(program.find("OK"));
        const QQuickItem *title = program.find(error);
        const QFontMetricsF metrics(title->property("font").value<QFont>());
        const double width = metrics.horizontalAdvance(error.section("\r\n", 0, 0)) + 2 * 24; // of the longest line
        QVERIFY2(qAbs(title->width() - width) < 3, qPrintable(QString::number(title->width())));
        const QQuickItem *view = program.find("Tx payloads")->parentItem()->parentItem();
        QVERIFY2((Screen::centre(title) - Screen::centre(view)).x() < 2, "not in the middle of its view");
        const QQuickItem *button = program.find("OK");
        const QRectF place = button->mapRectToScene(button->boundingRect());
        QVERIFY2(QRectF(QPointF(), button->window()->size()).contains(place), "beyond the edge of the window");
        program.click("OK");
        QTRY_VERIFY(!program.find("OK"));
    }

    void dialogOfAViewEndsWithItsSessionAndItsWindow()
    {
        const auto help = u"Need some help about transmission profiles?"_s;
        const auto *texts = m_ui->singleton("Strings", "Strings")->property("tuto").value<QObject *>();
        const std::function<void()> openHelp = [&] { click(help); };
        const std::function<void()> failTx = [&] { Q_EMIT m_ui->tx()->txErrorOccured(u"bad Tx"_s); };
        const std::function<void()> failImport = [&] { Q_EMIT m_ui->tx()->loadPrepassDataCompleted(u"bad CSV"_s); };
        for (const auto &[shown, open] : {std::pair(texts->property("txProfiles").toString(), openHelp),
                                          {u"bad Tx"_s, failTx},
                                          {u"bad CSV"_s, failImport}}) {
            connectBoard(u"ZEP1"_s);
            open();
            QTRY_VERIFY(find(shown));
            m_ui->manager->disconnect();
            QTRY_VERIFY2(!find(shown), qPrintable(shown));
        }
        m_ui->connectTo(ZepBoard::ZEP1);
        clickOn(find(u"Expand window"_s, find(u"Tx payloads"_s)->parentItem()));
        QTRY_VERIFY(secondaryWindow());
        const Screen own{secondaryWindow()};
        Q_EMIT m_ui->tx()->txErrorOccured(u"bad Tx"_s);
        QTRY_VERIFY(own.find(u"bad Tx"_s));
        own.window->close();
        QTRY_VERIFY(find(u"Tx payloads"_s));
        QTRY_VERIFY(!find(u"bad Tx"_s));
    }

    void missingSettingReadsAsItsDefaultAndLosesNoOther()
    {
        for (const QString &missing : {u"darkTheme"_s, u"firstVisit"_s, u"windowWidth"_s}) {
            m_ui->stop();
            const QVariantHash stored{
                {u"darkTheme"_s, false},           {u"firstVisit"_s, false}, {u"mode"_s, int(ZepManager::EXPERT)},
                {u"module"_s, int(ZepBoard::TBX)}, {u"windowHeight"_s, 700}, {u"windowWidth"_s, 1200}};
            QSettings().clear();
            for (auto value = stored.cbegin(); value != stored.cend(); ++value) {
                if (value.key() != missing) {
                    QSettings().setValue(value.key(), value.value());
                }
            }
            m_ui->start();
            QTest::qWait(800); // the toolkit writes after half a second
            m_ui->stop();
            for (auto value = stored.cbegin(); value != stored.cend(); ++value) {
                if (value.key() != missing) {
                    QCOMPARE(QSettings().value(value.key()).toString(), value.value().toString());
                }
            }
            QCOMPARE(QSettings().value(missing).toString(), missing == u"windowWidth" ? u"1350"_s : u"true"_s);
        }
    }

    void windowComesBackToItsPlaceOnAScreenThatExists()
    {
        const QRect screen = m_ui->window->screen()->geometry();
        for (const auto &[x, y, place] : {std::tuple(30, 40, QPoint(30, 40)),
                                          {screen.right() - 200, 50, QPoint(screen.right() + 1 - 700, 50)},
                                          {5000, 50, QPoint()}}) { // of a screen that is gone
            m_ui->window->setPosition(x, y);
            m_ui->window->resize(700, 500);
            QTRY_COMPARE(m_ui->window->position(), QPoint(x, y));
            QTest::qWait(20);
            QVERIFY(m_ui->window->close());
            m_ui->stop();
            m_ui->start();
            if (x < 5000) {
                QCOMPARE(m_ui->window->position(), place);
            } else {
                QVERIFY(screen.contains(m_ui->window->position()));
            }
            QCOMPARE(m_ui->window->size(), QSize(700, 500));
        }
        m_ui->window->showMaximized();
        QTRY_VERIFY(m_ui->window->width() > 700);
        QVERIFY(m_ui->window->close());
        m_ui->stop();
        m_ui->start();
        QCOMPARE(m_ui->window->visibility(), QWindow::Maximized);
        QVERIFY(m_ui->window->close());
        QCOMPARE(QSettings().value(u"windowWidth"_s).toInt(), 700); // of the window that is not maximized
    }

    void unusableWindowSizeIsReplaced()
    {
        for (const auto &[width, height, size] : {std::tuple(QVariant(), QVariant(), QSize(1350, 850)), // a first start
                                                  {-900, 700, QSize(1350, 700)},
                                                  {u"wide"_s, u"high"_s, QSize(1350, 850)},
                                                  {99999999, 1e12, QSize(1350, 850)}}) { // beyond any screen
            m_ui->stop();
            QSettings().setValue(u"windowWidth"_s, width);
            QSettings().setValue(u"windowHeight"_s, height);
            QSettings().setValue(u"mode"_s, width);
            QSettings().setValue(u"module"_s, height);
            m_ui->start();
            QCOMPARE(m_ui->window->size(), size);
            QCOMPARE(settings()->property("mode").toInt(), int(ZepManager::BASIC));
            QCOMPARE(settings()->property("module").toInt(), int(ZepBoard::ZEP1));
        }
    }

    void windowSizeIsSavedOnlyAtARegularClose()
    {
        for (const bool regular : {false, true}) {
            m_ui->window->resize(1000, 800);
            QTRY_COMPARE(m_ui->window->width(), 1000);
            QVERIFY(!regular || m_ui->window->close());
            m_ui->stop();
            m_ui->start();
            QCOMPARE(m_ui->window->size(), regular ? QSize(1000, 800) : QSize(1350, 850));
        }
    }

    void closingTheWindowEndsTheProgramWhateverIsOpen()
    {
        m_ui->connectTo(ZepBoard::RANGER);
        click(u"Expand window"_s);
        QTRY_VERIFY(secondaryWindow());
        m_ui->manager->QObject::disconnect(&m_ui->peer); // which would press the button
        m_ui->peer.say("RANGER -- SLEEP");
        QTRY_VERIFY(!m_ui->manager->board()->isAwake());

        expectCritical(QRegularExpression(u"^Unable to identify Ranger firmware"_s)); // which stays unanswered
        onceShown(u"Request ZEP info"_s, [&] { click(u"Request ZEP info"_s); });
        onceShown(wakeUp, [&] { m_ui->window->close(); });
        QTimer::singleShot(30000, m_ui->window, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0);
    }

    void failedConnectionIsToldPlainlyAndForgotten()
    {
        const QString port = u"/dev/<b>none</b>"_s;
        expectCritical("DeviceNotFoundError: No such file or directory");
        expectCritical(qPrintable("Unable to open port %1 No such file or directory"_L1.arg(port)));
        m_ui->manager->serialPort()->ports()->setStringList({port});
        click(u"ZEP2"_s);
        click(u"Connect"_s);
        const QString title = u"Unable to open port "_s + port;
        QTRY_VERIFY(find(title));
        QCOMPARE(find(title)->property("textFormat").toInt(), int(Qt::PlainText));
        QVERIFY(find(u"There is no such port now. Plug the kit in, or choose another port."_s));
        QVERIFY(find(u"Connect"_s)->isEnabled());
        QCOMPARE(settings()->property("module").toInt(), int(ZepBoard::ZEP1));

        click(u"OK"_s);
        QTRY_VERIFY(!find(title));
        QVERIFY(!m_ui->manager->board() && page() == u"connectionPage");
    }

    void portIsChosenByNameAndTheLastOneWhenItComesBack()
    {
        SerialPortManager *port = m_ui->manager->serialPort();
        QQuickItem *box = m_ui->find(u"COM port"_s, "currentIndex");
        const auto shown = [&](const QString &names) {
            port->setSystemPorts([names] {
                QList<ListedPort> ports;
                for (const QString &name : names.split(u' ', Qt::SkipEmptyParts)) {
                    ports.append({name, {}, 0, 0});
                }
                return ports;
            });
            return box->property("currentText").toString();
        };
        QCOMPARE(shown(u"A B C"_s), u"A"_s);
        box->forceActiveFocus();
        QTest::keyClick(m_ui->window, Qt::Key_Down);
        QCOMPARE(shown(u"A B C"_s), u"B"_s);
        QCOMPARE(shown(u"B C"_s), u"B"_s);
        QCOMPARE(shown(u"A C"_s), u"A"_s);
        QCOMPARE(shown(u"A"_s), u"A"_s);
        port->rememberPort(u"C"_s);
        QCOMPARE(shown(u"A B"_s), u"A"_s);
        QCOMPARE(shown(u"A B C"_s), u"C"_s);
        QTest::keyClick(m_ui->window, Qt::Key_Up);
        QCOMPARE(shown(u"A B C D"_s), u"B"_s); // and a choice by hand stays
        QCOMPARE(shown({}), QString());
        QVERIFY(!find(u"Connect"_s)->isEnabled() && find(u"No serial port: plug the kit in"_s));
        QCOMPARE(shown(u"C"_s), u"C"_s);
        QVERIFY(find(u"Connect"_s)->isEnabled() && !find(u"No serial port: plug the kit in"_s));
        m_ui->stop();
        QCOMPARE(ListedPort::last().name, u"C"_s);
    }

    void basicModeNeverUsesAHiddenBaudRate()
    {
        QVERIFY(!find(u"Baudrate"_s));
        click(u"Expert"_s);
        QTRY_VERIFY(find(u"Baudrate"_s) && find(u"More settings available!"_s));
        QQuickItem *box = m_ui->find(u"Baudrate"_s, "currentIndex");
        box->setProperty("currentIndex", 2);
        QCOMPARE(box->property("currentText").toString(), u"115200"_s);
        click(u"Basic"_s);
        QVERIFY(box->property("currentText") == u"Default"_s && !box->isVisible());

        click(u"Expert"_s);
        m_ui->stop();
        m_ui->start();
        QVERIFY(find(u"Baudrate"_s) && !find(u"More settings available!"_s));
    }

    void welcomeGreetsTheFirstVisitorOnly()
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

    void sessionThatEndsUnderTheSettingsPageLandsOnTheConnectionPage()
    {
        connectBoard(u"ZEP2"_s);
        QCOMPARE(settings()->property("module").toInt(), int(ZepBoard::ZEP2));
        click(u"Settings"_s);
        QTRY_COMPARE(page(), u"settingsPage"_s);
        m_ui->manager->disconnect();
        QCOMPARE(page(), u"connectionPage"_s);
        QTRY_VERIFY(find(u"Connect"_s));
        click(u"Settings"_s);
        click(u"Return"_s);
        QCOMPARE(page(), u"connectionPage"_s);
        connectBoard(u"ZEP1"_s);
    }

    void disconnectDialogFollowsTheBoardAndWaits()
    {
        connectBoard(u"ZEP1"_s);
        click(u"Disconnect"_s);
        // A transmission that is not answered is waited for; the dialog stays and cannot be pressed again.
        m_ui->manager->tx()->setAckPending(true);
        onceShown(u"Disconnecting"_s, [this] {
            QVERIFY(find(u"Disconnect ZEP1?"_s));
            QVERIFY(!find(u"OK"_s)->isEnabled());
            m_ui->manager->tx()->setAckPending(false);
        });
        click(u"OK"_s);
        QTRY_VERIFY(!m_ui->manager->board());
        QTRY_VERIFY(!find(u"OK"_s));
        connectBoard(u"ZEP2"_s);
        click(u"Disconnect"_s);
        QTRY_VERIFY(find(u"Disconnect ZEP2?"_s) && find(u"OK"_s)->isEnabled());
    }

    void expandedViewComesBackWhenASerialErrorClosesItsWindow()
    {
        for (int round = 0; round < 2; ++round) {
            connectBoard(u"ZEP2"_s);
            click(u"Expand window"_s);
            QTRY_VERIFY(secondaryWindow());
            QQuickWindow *secondary = secondaryWindow();
            const QString view = secondary->title();
            QTRY_VERIFY(Screen{secondary}.find(view) && !find(view));
            Q_EMIT m_ui->manager->serialPort()->serialError(u"The cable is gone"_s);
            QTRY_VERIFY(!secondary->isVisible());
            QTRY_VERIFY(find(view) && find(u"The cable is gone"_s));
            QVERIFY(!Screen{secondary}.find(u"The cable is gone"_s));
            click(u"OK"_s);
            QTRY_COMPARE(page(), u"connectionPage"_s);
            QTRY_VERIFY(!find(u"OK"_s));
            QTRY_VERIFY2(find(u"Connect"_s)->hasActiveFocus(), "Return does not connect again");
        }
    }

    void okInASerialErrorDuringTheWakeUpWaitIsSafe()
    {
        bool pressed = false;
        onceShown(wakeUp, [&] {
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
        QTRY_VERIFY(!find(u"Cancel"_s) && !find(u"OK"_s));
        connectBoard(u"ZEP1"_s);
    }

    void uncleanEndIsReportedAndItsFolderOffered()
    {
        m_ui->stop();
        QSettings config(u"config.ini"_s, QSettings::IniFormat);
        config.setValue("Journal/enabled", true);
        config.sync();
        const QDir folder(m_ui->folder.filePath(u"Sarvane/ZepGUI/journal"_s));
        const QString log = folder.filePath(u"2026-11-25_23-59-59-500_ZEP2.log"_s);
        QVERIFY(folder.mkpath(u"."_s));
        QDesktopServices::setUrlHandler(u"file"_s, this, "open");
        for (const bool isFolderWanted : {false, true}) {
            for (const QString &path : {log, QString(log).replace(".log"_L1, ".lock"_L1)}) {
                QVERIFY(QFile(path).open(QIODevice::WriteOnly));
            }
            m_ui->start();
            QTRY_VERIFY(find(u"Its log is kept in:\n"_s + log));
            QTRY_VERIFY(find(u"Close"_s)->hasActiveFocus());
            if (isFolderWanted) {
                click(u"Open folder"_s);
            } else {
                QTest::keyClick(m_ui->window, Qt::Key_Escape);
            }
            QTRY_VERIFY(!find(u"Open folder"_s));
            m_ui->stop();
        }
        QDesktopServices::unsetUrlHandler(u"file"_s);
        QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(folder.path())});
    }

    void wakeUpDialogClosesWithTheWait()
    {
        QSignalSpy connected(m_ui->manager, &ZepManager::connected);
        onceShown(wakeUp, [&] { click(u"Cancel"_s); });
        click(u"Ranger"_s);
        click(u"Connect"_s);
        QTRY_VERIFY(!find(wakeUp));
        QVERIFY(connected.isEmpty());
        QTRY_VERIFY(find(u"Unable to contact RANGER"_s));
    }
};

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
