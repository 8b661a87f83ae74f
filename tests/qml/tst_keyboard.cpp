// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Logger.h"
#include "PayloadModel.h"
#include "Program.h"

using namespace Qt::StringLiterals;

// The program without a mouse.
class TestKeyboard : public QObject
{
    Q_OBJECT
    /// What a screen reader says of the focus; of a spin box it is the number.
    static QString focused(const Program &ui)
    {
        QQuickItem *item = ui.window->activeFocusItem();
        const auto *accessible = item && item->isVisible() ? QAccessible::queryAccessibleInterface(item) : nullptr;
        const QString name = accessible ? accessible->text(QAccessible::Name) : QString();
        return name.isEmpty() && item ? item->property("text").toString() : name;
    }
    static void key(const Program &ui, Qt::Key key) { QTest::keyClick(ui.window, key); }
    static void press(const Program &ui, const QString &name, Qt::Key with)
    {
        for (int steps = 0; steps < 70 && focused(ui) != name; ++steps) {
            key(ui, Qt::Key_Tab);
        }
        QCOMPARE(focused(ui), name);
        key(ui, with);
    }
private Q_SLOTS:
    void tabLeadsThroughEveryControlInReadingOrder_data()
    {
        QTest::addColumn<int>("board");
        QTest::addColumn<QString>("order");
        QTest::newRow("connection") << int(ZepBoard::NA) << uR"(Settings|Basic|Expert|ZEP1|ZEP2|TBX (STM32WL)|Ranger|
COM port|Refresh list|Connect|Hello!)"_s;
        QTest::newRow("payloads") << int(ZepBoard::ZEP2) << uR"(Settings|Request ZEP info|Disconnect|Sarvane profile|
Modulation|Need some help about transmission profiles?|Periodic|Pre-pass|Period|Redundancy|Payload interval|Clear data|
Import data|Data view|Satellite infos|LOG|Expand window|Select and copy all logs|Clear all logs|RX lines|
Expand window|ACK|Check for any downlink message|P0|P0 message|P0 ACK|P0 downlink|
Payload allowed lengths depends on your modulation (if enabled, 2 bytes are used for ack or downlink options)|1|Add|
Start)"_s;
        QTest::newRow("sensors") << int(ZepBoard::RANGER) << uR"(Settings|Request ZEP info|Disconnect|Sarvane profile|
LoRa connectivity|Need some help about transmission profiles?|GET|Periodic|Pre-pass|Choose a custom UTC date and time|
UTC time: GET|Redundancy|Redundancy: GET|Get next pass|Data view|Satellite infos|NA, |GNSS position: GET|
Download AOP data from HelioWeb|AOP data: GET|Pass prediction: GET|Min. elevation|Min. pass duration|Configuration: GET|
Upload config|Import configuration file|Export configuration|LOG|Expand window|Get onboard configuration|GNSS enable|
Temperature enable|Humidity enable|Pressure enable|Light enable|Light alert|Light threshold|Accelerometer enable|
Accelerometer alert|Accelerometer threshold|Dry contact enable|Dry contact alert|Dry contact threshold|
Push button alert|Acquisition period)"_s;
    }
    void tabLeadsThroughEveryControlInReadingOrder()
    {
        QFETCH(int, board);
        QFETCH(QString, order);
        Program ui;
        if (board != ZepBoard::NA) {
            ui.connectTo(ZepBoard::Module(board));
            ui.tx()->setSelectedProfile(board == ZepBoard::RANGER ? TxManager::PREPASS_ON_MODULE : TxManager::PERIODIC);
            ui.tx()->addPayloadItem({});
            QTRY_VERIFY(board == ZepBoard::RANGER || ui.find(u"P0 message"_s));
        }
        order.remove(u'\n').replace(u"GET"_s, u"Get parameter(s) from module"_s);
        order.replace(u"LOG"_s, u"Expand window|Select and copy all logs|Clear all logs|Export logs/AT commands|"
                                "Filter AT commands when exporting|Log lines"_s);
        for (const QString &name : order.split(u'|') + QStringList{u"Settings"_s}) {
            key(ui, Qt::Key_Tab);
            QCOMPARE(focused(ui), name);
        }
    }
    void dialogsTakeEnterAndEscapeAsExpected()
    {
        Program ui;
        ui.connectTo(ZepBoard::ZEP2);
        for (const Qt::Key answer : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
            Q_EMIT ui.tx()->txErrorOccured(u"No more"_s);
            QTRY_COMPARE(focused(ui), u"OK"_s);
            press(ui, u"OK"_s, Qt::Key_Tab);
            press(ui, u"OK"_s, answer); // the only one, which Tab must not leave
            QTRY_VERIFY(!ui.find(u"No more"_s));
        }
        press(ui, u"Disconnect"_s, Qt::Key_Enter);
        QTRY_COMPARE(focused(ui), u"OK"_s);
        key(ui, Qt::Key_Escape);
        QTRY_VERIFY(!ui.find(u"OK"_s));
        QVERIFY(focused(ui) == u"Disconnect"_s && ui.manager->board());
        ui.manager->QObject::disconnect(&ui.peer); // which would press the button
        Q_EMIT ui.manager->userActionRequested();
        QTRY_COMPARE(focused(ui), u"Cancel"_s);
        key(ui, Qt::Key_Return);
        key(ui, Qt::Key_Escape);
        press(ui, u"Cancel"_s, Qt::Key_Space); // still there: no key pressed by mistake ends the wait
    }
    void sessionNeedsNoMouse()
    {
        Program ui;
        press(ui, u"ZEP2"_s, Qt::Key_Space);
        press(ui, u"Connect"_s, Qt::Key_Return);
        QTRY_COMPARE(ui.bar()->state(), u"dashboardPage"_s);
        for (int rows = 0; rows < 4; ++rows) {
            press(ui, u"Add"_s, Qt::Key_Enter);
        }
        press(ui, u"P3"_s, Qt::Key_Space);
        press(ui, u"Delete P3"_s, Qt::Key_Return);
        QTRY_VERIFY(!ui.find(u"P3 message"_s));
        press(ui, u"Start"_s, Qt::Key_Return);
        QTRY_COMPARE(focused(ui), u"Stop"_s);
        press(ui, u"P2 message"_s, Qt::Key_B); // in place of the old one
        Q_EMIT ui.tx()->currentIndexUpdated(1);
        key(ui, Qt::Key_2); // not lost when the sequence goes on
        QCOMPARE(ui.text(u"P2 message"_s), u"b2"_s);
        ui.peer.say("+TX=0,00"); // or the end of the session would wait for it
        QTRY_VERIFY(!ui.tx()->ackPending());
        press(ui, u"Stop"_s, Qt::Key_Return);
        QTRY_VERIFY(!ui.tx()->sequenceRunning());
        press(ui, u"Disconnect"_s, Qt::Key_Return);
        QTRY_COMPARE(focused(ui), u"OK"_s);
        key(ui, Qt::Key_Return);
        QTRY_COMPARE(ui.bar()->state(), u"connectionPage"_s);
    }
    void assistiveTechnologyPressesWhatIsEnabledAndReadsLinesInOrder()
    {
        Program ui;
        const auto interfaceOf = [&ui](const QString &name, const char *having = "visible") {
            return QAccessible::queryAccessibleInterface(ui.find(name, having));
        };
        const auto act = [&](const QString &name, const QString &action, const char *having = "visible") {
            interfaceOf(name, having)->actionInterface()->doAction(action);
        };
        act(u"ZEP2"_s, QAccessibleActionInterface::pressAction(), "checked");
        act(u"ZEP2"_s, QAccessibleActionInterface::toggleAction(), "checked"); // which changes nothing any more
        QVERIFY(interfaceOf(u"ZEP2"_s, "checked")->state().checked);
        act(u"Connect"_s, QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(ui.bar()->state(), u"dashboardPage"_s);
        QCOMPARE(ui.manager->board()->module(), ZepBoard::ZEP2);

        QVERIFY(interfaceOf(u"Start"_s)->state().disabled);
        act(u"Start"_s, QAccessibleActionInterface::pressAction());
        QVERIFY(!ui.tx()->sequenceRunning());
        act(u"Add"_s, QAccessibleActionInterface::pressAction());
        QTRY_VERIFY(ui.find(u"P0 ACK"_s, "checked") && !interfaceOf(u"Start"_s)->state().disabled);
        act(u"P0 ACK"_s, QAccessibleActionInterface::toggleAction(), "checked");
        QVERIFY(interfaceOf(u"P0 ACK"_s, "checked")->state().checked);
        QVERIFY(ui.tx()->payloadListModel()->getOptions(0).optionAck);
        interfaceOf(u"P0 message"_s, "acceptableInput")->editableTextInterface()->replaceText(0, 100, u"0A0B"_s);
        QCOMPARE(ui.text(u"P0 message"_s), u"0A0B"_s);
        act(u"Repeat"_s, QAccessibleActionInterface::increaseAction(), "value");
        QCOMPARE(interfaceOf(u"Repeat"_s, "value")->valueInterface()->currentValue().toInt(), 2);

        ui.manager->logger()->clearLogs();
        for (int line = 0; line < 200; ++line) {
            Q_EMIT ui.manager->logger()->logCreated(QString::number(1000 + line));
        }
        QQuickItem *lines = ui.find(u"Log lines"_s);
        lines->forceActiveFocus();
        for (const Qt::Key where : {Qt::Key_End, Qt::Key_Home, Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_PageUp}) {
            QTest::qWait(50);
            key(ui, where);
            const QAccessibleInterface *list = QAccessible::queryAccessibleInterface(lines);
            QVERIFY(list->childCount() > 5);
            for (int row = 1; row < list->childCount(); ++row) {
                QCOMPARE(list->child(row)->text(QAccessible::Name).toInt(),
                         list->child(row - 1)->text(QAccessible::Name).toInt() + 1);
            }
        }
    }
    void keysDoWhatTheirButtonsDoAndOnlyThen()
    {
        Program ui;
        const auto keys = [&ui](const char *sequence) { QTest::keySequence(ui.window, QKeySequence(sequence)); };
        keys("F1");
        QTRY_VERIFY(ui.find(u"Keyboard shortcuts"_s) && ui.find(u"Ctrl+N"_s));
        keys("F2"); // not from behind a dialog
        key(ui, Qt::Key_Escape);
        QTRY_VERIFY(!ui.find(u"Keyboard shortcuts"_s));
        QVERIFY(!ui.manager->board());
        keys("F2");
        QTRY_COMPARE(ui.bar()->state(), u"dashboardPage"_s);
        QTRY_VERIFY(!ui.bar()->property("stackView").value<QObject *>()->property("busy").toBool());
        keys("F5"); // disabled without a payload
        QVERIFY(!ui.tx()->sequenceRunning());
        keys("Ctrl+N");
        QTRY_VERIFY(ui.find(u"P0 message"_s));
        keys("F5");
        QTRY_VERIFY(ui.tx()->sequenceRunning());
        ui.peer.say("+TX=0,00");
        QTRY_VERIFY(!ui.tx()->ackPending());
        keys("Shift+F5");
        QTRY_VERIFY(!ui.tx()->sequenceRunning());
        for (const auto &[sequence, title] : {std::pair("Ctrl+S", u"Export logs to file..."_s),
                                              {"Ctrl+O", u"Please choose your prepass csv file"_s},
                                              {"Shift+F2", u"Disconnect ZEP1?"_s}}) {
            keys(sequence);
            QTRY_VERIFY2(ui.find(title), sequence);
            key(ui, Qt::Key_Escape);
            QTRY_VERIFY(!ui.find(title));
        }
        const QColor dark = ui.window->property("color").value<QColor>();
        keys("Ctrl+T");
        QTRY_VERIFY(ui.window->property("color").value<QColor>() != dark);
        keys("Ctrl+T");
        keys("Ctrl+,");
        QTRY_COMPARE(ui.bar()->state(), u"settingsPage"_s);
        keys("Ctrl+,");
        QTRY_COMPARE(ui.bar()->state(), u"dashboardPage"_s);
    }
};
QTEST_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
