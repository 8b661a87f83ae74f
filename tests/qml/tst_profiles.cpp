// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LoRaConnectivity.h"
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
        program.enter("Redundancy", "11");
        QCOMPARE(program.text("Redundancy"), "11");
        Q_EMIT program.tx()->sequenceRunningChanged();
        QCOMPARE(program.text("Redundancy"), "1"); // which was good when it stood there alone
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
