// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LoRaConnectivity.h"
#include "PeriodicProfile.h"
#include "Program.h"
#include "TxManager.h"

#include <QClipboard>

class tst_Profiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void profileOfARefusedChangeStays()
    {
        using enum TxManager::Profile;
        Program program;
        for (const auto &[board, before, button, request, after] :
             {std::tuple(ZepBoard::ZEP2, PREPASS_ON_MODULE, "Periodic", "AT+PREPASS_EN=0", PREPASS_ON_MODULE),
              {ZepBoard::ZEP2, PREPASS_ON_MODULE, "Periodic", "AT+PREPASS_EN=0", PERIODIC},
              {ZepBoard::ZEP2, PREPASS_ON_MODULE, "Pre-pass", "AT+PREPASS_EN=1", PREPASS_ON_MODULE},
              {ZepBoard::ZEP2, PREPASS, "Periodic", "", PERIODIC},
              {ZepBoard::ZEP2, PERIODIC, "Pre-pass", "", PREPASS},
              {ZepBoard::TBX, PREPASS_ON_MODULE, "Periodic", "", PERIODIC}, // which is not told the end
              {ZepBoard::RANGER, PERIODIC, "Pre-pass", "", PREPASS_ON_MODULE},
              {ZepBoard::RANGER, PREPASS_ON_MODULE, "Periodic", "", PERIODIC}}) {
            if (!program.manager->board() || program.manager->board()->module() != board) {
                program.manager->disconnect();
                program.connectTo(board);
            }
            program.tx()->setSelectedProfile(before);
            program.peer.forgetRequests();
            program.answers[request] = {before == after ? "+ERROR=1" : "+OK"};
            program.click(button);
            QCOMPARE(program.peer.requests().join(' '), request);
            QCOMPARE(program.tx()->selectedProfile(), after);
            // The buttons show what holds, also when the device tells another profile later.
            for (const auto told : {after, PERIODIC, PREPASS_ON_MODULE, PERIODIC}) {
                if (told != program.tx()->selectedProfile()) {
                    program.tx()->setSelectedProfile(told);
                }
                QCOMPARE(program.checked("Periodic"), told == PERIODIC);
                QCOMPARE(program.checked("Pre-pass"), told != PERIODIC);
            }
        }
    }

    void numberOutOfItsRangeStaysToBeSeenUntilASequenceBegins()
    {
        Program program;
        program.connectTo(ZepBoard::ZEP1);
        PeriodicProfile *periodic = program.tx()->periodicProfile();
        periodic->setDelay(61);
        periodic->setPeriod(8);
        periodic->setRedundancy(9);
        QCOMPARE(program.text("Period") + program.text("Payload interval") + program.text("Redundancy"), "6189");
        // What was good when it stood there alone is kept.
        for (const auto &[field, typed, kept] :
             {std::tuple("Period", "256", "61"), {"Payload interval", "256", "25"}, {"Redundancy", "11", "1"}}) {
            program.enter(field, typed);
            QCOMPARE(program.text(field), typed);
            Q_EMIT program.tx()->sequenceRunningChanged();
            QCOMPARE(program.text(field), kept);
        }
        program.enter("Period", "70");
        QCOMPARE((QList<int>{periodic->delay(), periodic->period(), periodic->redundancy()}), (QList<int>{70, 25, 1}));
    }

    void modulationIsSentAndShownAsTheModuleReportsIt()
    {
        Program program;
        program.stop(); // it looks for the blocks when it begins
        QVERIFY(QDir().mkpath("res/rconf"));
        for (const auto &[name, content] : {std::pair("res/rconf/radio_conf_1_2_3_HRZ.bin", "0123456789abcdeZ"),
                                            {"chosen.bin", "0123456789abcdef"}}) {
            QFile file(name);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == 16);
        }
        program.start();
        const auto shown = [&program](const char *modulation, const char *range, const char *power, const char *size) {
            const auto *box = program.find("Modulation", "currentIndex");
            return box->property("displayText") == modulation &&
                   program.find(QString("Modulation: %1").arg(modulation)) &&
                   program.find(QString("Frequency: %1 Hz").arg(range)) &&
                   program.find(QString("Power: %1 dBm").arg(power)) &&
                   program.find(QString("TX payloads length must be %1 bytes").arg(size));
        };
        program.answers = {{"AT+RCONF=?", {"+RCONF=399900000,401600000,27,HRA2"}}};
        program.connectTo(ZepBoard::TBX);
        program.click("Modulation");
        QVERIFY(shown("HRA2", "399900000 - 401600000", "27", "4, 8, 12, 16, 20, 24"));

        program.find("Modulation", "currentIndex")->setProperty("currentIndex", ModulationModel::HRZ);
        program.answers["AT+RCONF=?"] = {"+RCONF=1,2,3,SHRA4"};
        program.click("Apply chosen modulation");
        QCOMPARE(program.peer.requests().join(' '), "AT+RCONF=3031323334353637383961626364655A AT+RCONF=?");
        QVERIFY(shown("SHRA4", "1 - 2", "3", "3"));

        program.tx()->modulationModel()->clear(); // a modulation that the module does not report has no block
        QVERIFY(!program.enabled("Apply chosen modulation"));

        Screen::evaluate(program.find("Apply chosen modulation"),
                         "fileDialog.mFolder = 'file://" + program.folder.path() + "'");
        program.answers["AT+RCONF=30313233343536373839616263646566"] = {"+ERROR=5"};
        QSignalSpy log(program.manager->logger(), &Logger::logCreated);
        program.click("Upload your radio configuration from binary file");
        program.click("chosen.bin");
        program.click("Open");
        QTRY_VERIFY(!log.isEmpty() && log.last().at(0).toString().endsWith("Cannot set radio configuration!"));
        QCOMPARE(program.peer.requests().constLast(), "AT+RCONF=30313233343536373839616263646566");
    }

    void loraSettingsAreReadEditedAndKept()
    {
        const QString get = "LoRa: Get parameter(s) from module";
        Program program;
        program.answers = {{"AT+FW=?", {"+FW=1,SW1.4.0"}},
                           {"AT+LORA_EN=?", {"+LORA_EN=1"}},
                           {"AT+LORA_REDUN=?", {"+LORA_REDUN=6"}},
                           {"AT+LORA_ACK=?", {"+LORA_ACK=1"}},
                           {"AT+LORA_AEUI=?", {"+LORA_AEUI=A0,B1,C2,D3,E4,F5,06,17"}}};
        program.connectTo(ZepBoard::RANGER);
        program.click("LoRa connectivity");
        program.click(get);
        const QQuickItem *row = program.find("A0 B1 C2 D3 E4 F5 06 17 ")->parentItem();
        // The copy leaves the text bound to what is set further down.
        QTest::mouseClick(program.window, Qt::LeftButton, {}, Screen::centre(program.find("Copy", "visible", row)));
        QCOMPARE(QGuiApplication::clipboard()->text(), "A0B1C2D3E4F50617");
        QVERIFY(program.find("A0 B1 C2 D3 E4 F5 06 17 "));
        QVERIFY2(!program.field("Redundancy"), "with the acknowledgement nothing is repeated");
        program.click("ACK");
        QVERIFY(!program.tx()->loraConfig()->ackEnabled());
        QCOMPARE(program.text("Redundancy"), "6");

        program.click("Update App EUI");
        program.enter("App EUI", "0011");
        QVERIFY(!program.enabled("Set parameter(s) in module"));
        program.click(get); // which tells what was known
        QCOMPARE(program.text("App EUI"), "A0B1C2D3E4F50617");
        program.click("Cancel");
        QVERIFY(program.find("A0 B1 C2 D3 E4 F5 06 17 "));
        program.click("Update App EUI");
        program.enter("App EUI", "0123456789abcdefg");
        program.click("Set parameter(s) in module");
        QCOMPARE(program.tx()->loraConfig()->appEui(), "0123456789abcdef");
        QVERIFY(program.find("01 23 45 67 89 ab cd ef "));
        program.click("Update App Key");
        program.enter("App Key", "00112233445566778899aabbccddeeff");
        program.click("Set parameter(s) in module");
        QCOMPARE(program.tx()->loraConfig()->appKey(), "00112233445566778899aabbccddeeff");
        QCOMPARE(program.tx()->loraConfig()->appEui(), "0123456789abcdef");

        program.click("Update App Key"); // and what is typed for one device is not sent to the next
        program.enter("App Key", "ffffffffffffffffffffffffffffffff");
        program.manager->disconnect();
        program.answers = {{"AT+FW=?", {"+FW=1,SW1.4.0"}}, {"AT+LORA_AKEY=?", {"+ERROR=1"}}};
        program.connectTo(ZepBoard::RANGER);
        program.click("LoRa connectivity");
        QVERIFY(!program.field("App Key"));
        program.click("Update App Key");
        QCOMPARE(program.text("App Key"), "");

        program.manager->disconnect();
        program.answers["AT+FW=?"] = {"+FW=1,SW1.3.9"};
        program.connectTo(ZepBoard::RANGER);
        QVERIFY2(program.find("Choose your transmission profile"), "not on the first tab again");
        program.click("LoRa connectivity");
        QVERIFY(program.find("Support of LoRa connectivity is available on version >= 1.4"));
        QVERIFY(!program.enabled(get));
    }
};

QTEST_MAIN(tst_Profiles)
#include "tst_profiles.moc"
