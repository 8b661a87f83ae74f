// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LoRaConnectivity.h"
#include "Program.h"
#include "TxManager.h"

using namespace Qt::StringLiterals;

class tst_Profiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void profileOfARefusedChangeStays_data();
    void profileOfARefusedChangeStays();
    void onlyAGoodNumberIsTaken_data();
    void onlyAGoodNumberIsTaken();
    void loraSettingsAreReadEditedAndKept();
};

void tst_Profiles::profileOfARefusedChangeStays_data()
{
    QTest::addColumn<ZepBoard::Module>("board");
    QTest::addColumn<TxManager::Profile>("before");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("requests");
    QTest::addColumn<TxManager::Profile>("after");
    const QStringList off{"AT+PREPASS_EN=0"};
    const QStringList on{"AT+PREPASS_EN=1"};
    constexpr auto periodic = TxManager::PERIODIC;
    constexpr auto prepass = TxManager::PREPASS;
    constexpr auto onModule = TxManager::PREPASS_ON_MODULE;
    QTest::newRow("refused") << ZepBoard::ZEP2 << onModule << "Periodic"
                             << "+ERROR=1" << off << onModule;
    QTest::newRow("taken") << ZepBoard::ZEP2 << onModule << "Periodic"
                           << "+OK" << off << periodic;
    QTest::newRow("same again, refused") << ZepBoard::ZEP2 << onModule << "Pre-pass"
                                         << "+ERROR=1" << on << onModule;
    QTest::newRow("not on the module") << ZepBoard::ZEP2 << prepass << "Periodic"
                                       << "+ERROR=1" << QStringList() << periodic;
    QTest::newRow("from periodic") << ZepBoard::ZEP2 << periodic << "Pre-pass"
                                   << "+ERROR=1" << QStringList() << prepass;
    QTest::newRow("tbx is not told the end") << ZepBoard::TBX << onModule << "Periodic"
                                             << "+ERROR=1" << QStringList() << periodic;
    QTest::newRow("tbx, refused") << ZepBoard::TBX << onModule << "Pre-pass"
                                  << "+ERROR=1" << on << onModule;
    QTest::newRow("ranger is told nothing") << ZepBoard::RANGER << periodic << "Pre-pass"
                                            << "+ERROR=1" << QStringList() << onModule;
    QTest::newRow("ranger, back") << ZepBoard::RANGER << onModule << "Periodic"
                                  << "+ERROR=1" << QStringList() << periodic;
}

void tst_Profiles::profileOfARefusedChangeStays()
{
    QFETCH(const ZepBoard::Module, board);
    QFETCH(const TxManager::Profile, before);
    QFETCH(const QString, button);
    QFETCH(const QString, answer);
    QFETCH(const TxManager::Profile, after);
    Program program;
    program.connectTo(board);
    program.tx()->setSelectedProfile(before);
    program.answers = {{"AT+PREPASS_EN=0", {answer}}, {"AT+PREPASS_EN=1", {answer}}};
    program.click(button);
    QTEST(program.peer.requests(), "requests");
    QCOMPARE(program.tx()->selectedProfile(), after);
    // The buttons show what holds, also when the device tells another profile later.
    for (const auto told : {after, TxManager::PERIODIC, TxManager::PREPASS_ON_MODULE, TxManager::PERIODIC}) {
        program.tx()->setSelectedProfile(told);
        QCOMPARE(program.checked("Periodic"), told == TxManager::PERIODIC);
        QCOMPARE(program.checked("Pre-pass"), told != TxManager::PERIODIC);
    }
}

void tst_Profiles::onlyAGoodNumberIsTaken_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept"); // as it stands in the field
    QTest::addColumn<bool>("good");
    QTest::addColumn<QString>("taken"); // the last that was good
    const auto row = [](const char *name, const char *field, const char *typed, const char *kept, bool good,
                        const char *taken) { QTest::newRow(name) << field << typed << kept << good << taken; };
    row("good", "Redundancy", "7", "7", true, "7");
    row("below", "Redundancy", "0", "0", false, "4");
    row("above", "Redundancy", "11", "11", false, "1");
    row("comma for a point", "Redundancy", "4,5", "4,5", false, "4");
    row("thousands", "Payload interval", "0,045", "0,04", false, "5");
    row("letters are not taken", "Payload interval", "1x2e", "12", true, "12");
    row("too short a period", "Period", "59", "59", false, "60");
}

void tst_Profiles::onlyAGoodNumberIsTaken()
{
    QFETCH(const QString, field);
    QFETCH(const QString, typed);
    Program program;
    program.connectTo(ZepBoard::ZEP1);
    program.enter(field, typed);
    QTEST(program.text(field), "kept");
    QTEST(program.field(field)->property("acceptableInput").toBool(), "good");
    // A sequence begins, and what was half typed gives way to the last number that was taken.
    program.tx()->addPayloadItem("00");
    program.tx()->start(1);
    QTEST(program.text(field), "taken");
    QVERIFY(!program.field(field)->isEnabled());
}

void tst_Profiles::loraSettingsAreReadEditedAndKept()
{
    Program program;
    program.answers["AT+FW=?"] = {"+FW=1,SW1.4.0"};
    program.answers["AT+LORA_EN=?"] = {"+LORA_EN=1"};
    program.answers["AT+LORA_REDUN=?"] = {"+LORA_REDUN=6"};
    program.answers["AT+LORA_ACK=?"] = {"+LORA_ACK=1"};
    program.answers["AT+LORA_DEUI=?"] = {"+LORA_DEUI=00,11,22,33,44,55,66,77"};
    program.answers["AT+LORA_AEUI=?"] = {"+LORA_AEUI=A0,B1,C2,D3,E4,F5,06,17"};
    program.answers["AT+LORA_AKEY=?"] = {"+LORA_AKEY=00,01,02,03,04,05,06,07,08,09,0A,0B,0C,0D,0E,0F"};
    program.connectTo(ZepBoard::RANGER);
    LoRaConnectivity *config = program.tx()->loraConfig();
    program.click("LoRa connectivity");
    program.click("LoRa: Get parameter(s) from module");
    QVERIFY(program.find("00 11 22 33 44 55 66 77 ") && program.find("A0 B1 C2 D3 E4 F5 06 17 "));
    QVERIFY2(!program.field("Redundancy"), "with the acknowledgement nothing is repeated");
    program.click("ACK");
    QVERIFY(!config->ackEnabled());
    QCOMPARE(program.text("Redundancy"), "6");

    program.click("Update App EUI");
    program.enter("App EUI", "0011");
    QVERIFY(!program.enabled("Set parameter(s) in module"));
    program.click("LoRa: Get parameter(s) from module");
    QCOMPARE(program.text("App EUI"), "A0B1C2D3E4F50617");
    program.enter("App EUI", "");
    QTest::keyClick(program.window, Qt::Key_Return);
    QCOMPARE(program.text("App EUI"), "A0B1C2D3E4F50617");
    program.enter("App EUI", "8899");
    program.click("Cancel");
    QVERIFY(program.find("A0 B1 C2 D3 E4 F5 06 17 "));
    program.click("Update App EUI");
    QCOMPARE(program.text("App EUI"), "A0B1C2D3E4F50617");
    program.enter("App EUI", "0123456789abcdefg");
    program.click("Set parameter(s) in module");
    QCOMPARE(config->appEui(), "0123456789abcdef");
    QVERIFY(program.find("01 23 45 67 89 ab cd ef "));

    program.manager->disconnect();
    program.answers["AT+FW=?"] = {"+FW=1,SW1.3.9"};
    program.connectTo(ZepBoard::RANGER);
    QVERIFY2(program.find("Choose your transmission profile"), "not on the first tab again");
    program.click("LoRa connectivity");
    QVERIFY(program.find("Support of LoRa connectivity is available on version >= 1.4"));
    QVERIFY(!program.enabled("LoRa: Get parameter(s) from module"));
}

QTEST_MAIN(tst_Profiles)
#include "tst_profiles.moc"
