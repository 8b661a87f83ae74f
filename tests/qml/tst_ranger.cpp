// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Program.h"

using namespace Qt::StringLiterals;

class TestRanger : public ProgramTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_ui = std::make_unique<Program>();
        m_ui->window->resize(1350, 1200); // all sensors in sight
    }
    void cleanup() { m_ui.reset(); }

    void uncheckedSensorRaisesNoAlert()
    {
        m_ui->connectTo(ZepBoard::RANGER);
        click(u"Light alert"_s);
        QVERIFY(alert(SensorModel::LIGHT));
        click(u"Light enable"_s);
        QVERIFY(!enable(SensorModel::LIGHT) && !alert(SensorModel::LIGHT));
        QVERIFY(!checked(u"Light alert"_s) && !enabled(u"Light alert"_s));
        click(u"Light enable"_s);
        QVERIFY(!checked(u"Light alert"_s) && enabled(u"Light alert"_s) && !enabled(u"Humidity alert"_s));
        QVERIFY(checked(u"Push button enable"_s) && !enabled(u"Push button enable"_s));
        QVERIFY(enabled(u"Push button alert"_s) && !enabled(u"Push button threshold"_s));
    }

    void gnssStaysOnWhereThePassesArePredicted()
    {
        const auto warning =
            u"WARNING! GNSS sensor is mandatory in Pre-pass mode\nfor accurate prediction pass calculation"_s;
        m_ui->connectTo(ZepBoard::RANGER);
        for (const auto profile : {TxManager::PREPASS, TxManager::PREPASS_ON_MODULE}) {
            m_ui->manager->tx()->setSelectedProfile(TxManager::PERIODIC);
            click(u"GNSS enable"_s);
            QVERIFY(!find(warning) && !enable(SensorModel::GNSS));
            sensors()->setAlert(SensorModel::GNSS, true);
            sensors()->setEnable(SensorModel::HUMIDITY, false);
            m_ui->manager->tx()->setSelectedProfile(profile);
            QVERIFY(checked(u"GNSS enable"_s) && alert(SensorModel::GNSS) && !enable(SensorModel::HUMIDITY));
        }
        click(u"GNSS enable"_s);
        QTRY_VERIFY(find(warning));
        key(Qt::Key_Escape);
        QTest::mouseClick(m_ui->window, Qt::LeftButton, {}, {5, 600}); // outside of it
        QVERIFY(!checked(u"GNSS enable"_s));
        click(u"OK"_s);
        QTRY_VERIFY2(!find(warning), "it went by other means than its button");
        QVERIFY(checked(u"GNSS enable"_s));
    }

    void deviceReplacesWhatWasTouched()
    {
        m_ui->connectTo(ZepBoard::RANGER);
        for (const bool on : {true, false, true}) {
            click(u"Dry contact enable"_s);
            sensors()->setEnable(SensorModel::DRY_CONTACT, on);
            QCOMPARE(checked(u"Dry contact enable"_s), on);
            type(u"Light threshold"_s, u"7"_s);
            sensors()->setThresholdValues(SensorModel::LIGHT, u"400,3000"_s);
            QCOMPARE(text(u"Light threshold"_s), u"400,3000"_s);
            type(u"Acquisition period"_s, u"59"_s);
            sensors()->setAcquisitionPeriod(3600);
            QCOMPARE(text(u"Acquisition period"_s), u"3600"_s);
        }
    }

    void fieldsStoreOnlyWhatIsGood()
    {
        const auto period = u"Acquisition period"_s;
        const auto bound = u"Accelerometer threshold"_s;
        m_ui->connectTo(ZepBoard::RANGER);
        for (const auto &[field, typed, stored] : {std::tuple{period, u"60"_s, u"60"_s},
                                                   {period, u"59"_s, u"60"_s},
                                                   {period, u"65535"_s, u"65535"_s},
                                                   {period, u"65536"_s, u"65535"_s},
                                                   {period, u""_s, u"65535"_s},
                                                   {period, u"1,000"_s, u"1000"_s},
                                                   {bound, u"x1y,-2z"_s, u"1,2"_s},
                                                   {bound, u""_s, u"1,2"_s}}) {
            type(field, typed);
            key(Qt::Key_Return);
            key(Qt::Key_Backtab);
            const auto values = sensors()->sensorMap()[SensorModel::ACCELEROMETER]->thresholdValues();
            QCOMPARE(field == period ? QString::number(sensors()->acquisitionPeriod()) : values, stored);
            const bool red = typed == u"59" || typed == u"65536"; // stays as it was typed
            QCOMPARE(text(field), red ? typed : stored);
            QCOMPARE(m_ui->field(field)->property("color").value<QColor>() == QColor(0xF4, 0x43, 0x36), red);
        }
    }

    void spinnerStandsForTheGetButtonWhileBusy()
    {
        const auto get = u"Configuration: Get parameter(s) from module"_s;
        const auto busy = u"Configuration under way"_s;
        m_ui->connectTo(ZepBoard::RANGER);
        tell(true);
        QVERIFY(!find(get) && find(busy));
        for (const auto &button : {u"Upload config"_s, u"Import configuration file"_s, u"Export configuration"_s}) {
            QVERIFY2(!enabled(button), qPrintable(button));
        }
        tell(false);
        click(u"Export configuration"_s);
        QVERIFY(find(busy) && enabled(u"Upload config"_s));
        tell(false); // the end of an export, which never said that it was busy
        QVERIFY(find(get) && !find(busy));
    }

    void fileDialogThatBringsNothingEndsTheSpinnerAndCallsNothing()
    {
        const auto import = u"Import configuration file"_s;
        const auto document = u"a.docx.txt"_s;
        m_ui->connectTo(ZepBoard::RANGER);
        Screen::evaluate(find(u"Upload config"_s), u"importDialog.mFolder = 'file://%1'"_s.arg(m_ui->folder.path()));
        QVERIFY(QFile(m_ui->folder.filePath(document)).open(QIODevice::WriteOnly));
        const auto refusal = u"ERROR: %1 is a document (.doc, .ppt, .odt) and no configuration!"_s.arg(document);
        QSignalSpy log(m_ui->manager->logger(), &Logger::logCreated);
        for (const auto &[button, end] :
             {std::pair(import, u"Escape"_s), {import, u"Open"_s}, {u"Export configuration"_s, u"Cancel"_s}}) {
            click(button);
            QVERIFY(find(u"Configuration under way"_s));
            QTRY_VERIFY(find(u"Cancel"_s));
            if (end == u"Open") {
                click(document);
            }
            end == u"Escape" ? key(Qt::Key_Escape) : click(end);
            QTRY_VERIFY(!find(u"Configuration under way"_s) && !find(u"Cancel"_s));
            QCOMPARE(find(refusal) != nullptr, end == u"Open");
            QTRY_VERIFY(!find(refusal));
        }
        QVERIFY(log.isEmpty());
        // Only the own name of a file counts, and not that of its folder.
        const QDir folder(m_ui->folder.filePath(u"my.documents"_s));
        QVERIFY(folder.mkpath(u"."_s) && QFile(folder.filePath(u"a.txt"_s)).open(QIODevice::WriteOnly));
        Screen::evaluate(find(u"Upload config"_s), u"importDialog.mFolder = 'file://%1'"_s.arg(folder.path()));
        click(import);
        click(u"a.txt"_s);
        click(u"Open"_s);
        QTRY_VERIFY(find(u"Configuration imported!"_s));
    }

    void messagesOfTheBackendAreColouredAndPassBy()
    {
        m_ui->connectTo(ZepBoard::RANGER);
        const auto error = u"ERROR: <b>So bad</b>"_s;
        const auto colour = [this](const QString &message) {
            const QQuickItem *label = find(message);
            if (label == nullptr) {
                return QColor(); // gone already
            }
            const auto *background = label->parentItem()->property("background").value<QQuickItem *>();
            return background->property("background").value<QQuickItem *>()->property("color").value<QColor>();
        };
        tell(false, u"Well done"_s);
        QTRY_VERIFY(find(u"Well done"_s));
        QCOMPARE(colour(u"Well done"_s), QColor(0x00, 0x96, 0x88));
        tell(false, u"<b>So bad</b>"_s, true);
        QTRY_VERIFY(find(error) && !find(u"Well done"_s));
        QCOMPARE(colour(error), QColor(0xF4, 0x43, 0x36));
        tell(false, {}, true); // shows nothing, and leaves what shows
        QVERIFY(find(error) && !find(u"ERROR: "_s));
        QTRY_VERIFY(!find(error));
    }

    void sensorsInTheirOwnWindowLeaveTheColumnAndComeBack()
    {
        m_ui->connectTo(ZepBoard::RANGER);
        QQuickItem *title = find(u"Sensors config"_s);
        const QQuickItem *log = find(u"Log lines"_s);
        const auto *column = Screen::evaluate(title->parentItem(), u"root.mParentPane.parent"_s).value<QQuickItem *>();
        const double height = log->height();
        clickOn(find(u"Expand window"_s, title->parentItem()));
        QQuickWindow *own = title->window();
        QVERIFY(own != m_ui->window && own->isVisible() && !find(u"Light enable"_s));
        QTRY_VERIFY(log->height() > 1.5 * height);
        QVERIFY2(!column->isVisible(), "it still takes the room of a spacing");
        Screen{own}.click(u"Light enable"_s);
        QVERIFY(!enable(SensorModel::LIGHT));
        own->close();
        QTRY_COMPARE(log->height(), height);
        QVERIFY(title->window() == m_ui->window && !checked(u"Light enable"_s));
    }

    void powerFollowsTheDeviceAndNotAnUnappliedChoice()
    {
        openSettings(ZepBoard::ZEP1);
        const auto choice = [this] { return find(u"Tx power"_s)->property("displayText").toString(); };
        const auto choose = [&] {
            m_ui->manager->board()->setTxPower(300);
            QCOMPARE(choice(), u""_s);
            m_ui->manager->board()->setTxPower(500);
            find(u"Tx power"_s)->forceActiveFocus();
            key(Qt::Key_Down);
            QCOMPARE(choice(), u"250"_s);
        };
        m_ui->answers.insert(u"AT+PWR=250"_s, {u"+ERROR=5"_s});
        choose();
        find(u"Tx power: Set parameter(s) in module"_s)->forceActiveFocus();
        m_ui->peer.forgetRequests();
        key(Qt::Key_Space);
        QTRY_COMPARE(m_ui->peer.requests(), QStringList(u"AT+PWR=250"_s));
        QTRY_COMPARE(choice(), u"500"_s); // refused
        choose();
        m_ui->manager->board()->setTxFrequency(401650000);
        type(u"Tx frequency"_s, u"1"_s);
        QCOMPARE(choice(), u"500"_s);
        key(Qt::Key_Tab);
        QCOMPARE(text(u"Tx frequency"_s), u"401.65"_s);
    }

    void expertsCommandNeedsItsPrefixAndShowsItsWait()
    {
        const auto field = u"Custom AT command"_s;
        const auto send = field + u": Set parameter(s) in module"_s;
        openSettings(ZepBoard::ZEP2);
        QVERIFY(find(u"ZEP2 Module settings"_s) && !find(u"Tx power"_s));
        m_ui->answers.insert(u"AT+ID=?"_s, {});
        m_ui->manager->tx()->setAckPending(true); // it does not wait for a sequence
        type(field, u"ID=?"_s);
        key(Qt::Key_Return);
        QVERIFY(!enabled(send) && m_ui->peer.requests().isEmpty());
        type(field, u"AT+ID=?"_s);
        QObject::connect(&m_ui->peer, &ScriptedPeer::requested, m_ui->window, [&] {
            QVERIFY(find(u"Waiting for the answer to the custom AT command"_s) && !find(send));
            m_ui->peer.say("+ID=00AABB");
        });
        key(Qt::Key_Return);
        QTRY_COMPARE(m_ui->manager->board()->id(), u"00AABB"_s);
        QTRY_VERIFY(find(send) && enabled(send));
        m_ui->manager->tx()->setAckPending(false);
        type(field, u"AT+PREPASS_E"_s);
        key(Qt::Key_Tab);
        QCOMPARE(text(field), u"AT+PREPASS_EN"_s);
        QVERIFY(m_ui->field(field)->hasActiveFocus());
        key(Qt::Key_Tab); // nothing is left to complete
        QVERIFY(!m_ui->field(field)->hasActiveFocus());
        type(field, u"AT+I"_s);
        key(Qt::Key_Up);
        QCOMPARE(text(field), u"AT+ID=?"_s);
        key(Qt::Key_Down);
        QCOMPARE(text(field), u"AT+I"_s);

        m_ui->manager->disconnect();
        QCOMPARE(text(field), QString()); // meant for that device
        click(u"Settings"_s);
        QTRY_VERIFY(find(u"Module settings"_s) && !enabled(field));
        m_ui->singleton("Settings", "Settings")->setProperty("mode", ZepManager::BASIC);
        QVERIFY(!find(field) && !find(u"Module settings"_s));
    }

private:
    bool enable(SensorModel::Id id) const { return sensors()->sensorMap()[id]->enable(); }
    bool alert(SensorModel::Id id) const { return sensors()->sensorMap()[id]->alert(); }
    SensorModel *sensors() const { return m_ui->manager->board()->sensorListModel(); }
    bool checked(const QString &box) const { return m_ui->checked(box); }
    bool enabled(const QString &control) const { return find(control)->isEnabled(); }
    QString text(const QString &field) const { return m_ui->text(field); }
    void type(const QString &field, const QString &typed) const { m_ui->enter(field, typed); }
    void key(Qt::Key key) const { QTest::keyClick(m_ui->window, key); }
    void tell(bool processing, const QString &message = {}, bool error = false) const
    {
        QMetaObject::invokeMethod(m_ui->manager, "setProcessingData", Q_ARG(bool, processing), Q_ARG(QString, message),
                                  Q_ARG(bool, error));
    }
    void openSettings(ZepBoard::Module module)
    {
        m_ui->singleton("Settings", "Settings")->setProperty("mode", ZepManager::EXPERT);
        m_ui->connectTo(module);
        click(u"Settings"_s);
        QTRY_COMPARE(m_ui->bar()->state(), u"settingsPage"_s);
    }
};

QTEST_MAIN(TestRanger)
#include "tst_ranger.moc"
