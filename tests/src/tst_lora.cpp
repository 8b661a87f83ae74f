// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LoRaConnectivity.h"
#include "ScriptedSession.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestLora : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void boardWithoutLoRaIsNotAsked_data();
    void boardWithoutLoRaIsNotAsked();
    void unansweredQuestionDoesNotStopTheOthers();
    void settingStopsAtTheFirstRefusal_data();
    void settingStopsAtTheFirstRefusal();
    void linesThatAreNoneLeaveTheFields();
    void endOfASessionForgetsInSilence();
    void wireFormHasNoCommaAtTheEnd_data();
    void wireFormHasNoCommaAtTheEnd();

private:
    LoRaConnectivity *config() const { return m_session->manager.tx()->loraConfig(); }

    std::unique_ptr<ScriptedSession> m_session;
};

void TestLora::init()
{
    m_session.reset();
    m_session = std::make_unique<ScriptedSession>();
}

void TestLora::boardWithoutLoRaIsNotAsked_data()
{
    QTest::addColumn<ZepBoard::Module>("module");
    QTest::addColumn<QString>("firmware");
    QTest::newRow("ZEP2") << ZepBoard::ZEP2 << u"1,SW1.4.0"_s;
    QTest::newRow("Ranger before the stack") << ZepBoard::RANGER << u"1,SW1.3.9"_s;
}

void TestLora::boardWithoutLoRaIsNotAsked()
{
    QFETCH(ZepBoard::Module, module);
    QFETCH(QString, firmware);
    m_session->peer.answer(u"AT+FW=?"_s, {u"+FW="_s + firmware});
    QVERIFY(m_session->connectTo(module));
    m_session->peer.forgetRequests();
    m_session->log.clear();
    m_session->manager.getLoRaConfig();
    QVERIFY(!m_session->manager.setLoRaConfig());
    QCOMPARE(m_session->log, QStringList(2, u"[APP] LORA CONFIG: This board is not compatible with LoRa"_s));
    QCOMPARE(m_session->peer.requests(), QStringList());
}

void TestLora::unansweredQuestionDoesNotStopTheOthers()
{
    QVERIFY(m_session->connectTo(ZepBoard::RANGER));
    ScriptedPeer &peer = m_session->peer;
    peer.answer(u"AT+LORA_EN=?"_s, {u"+LORA_EN=1"_s});
    peer.answer(u"AT+LORA_REDUN=?"_s, {u"+LORA_REDUN=300"_s});
    peer.answer(u"AT+LORA_DEUI=?"_s, {u"+LORA_DEUI=0a,1b,2c,3d,4e,5f,60,71"_s});
    peer.answer(u"AT+LORA_AEUI=?"_s, {u"+ERROR=5"_s});
    peer.answer(u"AT+LORA_AKEY=?"_s, {u"+LORA_AKEY=00,01,02,03,04,05,06,07,08,09,0A,0B,0C,0D,0E,0F"_s});
    peer.answer(u"AT+LORA_ACK=?"_s, {u"+LORA_ACK=0"_s});
    peer.forgetRequests();
    m_session->manager.board()->setIsAwake(false);
    m_session->manager.getLoRaConfig();
    QCOMPARE(peer.requests().replaceInStrings(QRegularExpression(u"AT\\+LORA_|=\\?"_s), QString()),
             u"EN REDUN DEUI AEUI AKEY ACK"_s.split(u' '));
    QCOMPARE(m_session->log.filter(u"Unable"_s), QStringList{u"[APP] Unable to get LoRa App EUI"_s});
    QVERIFY(m_session->manager.tx()->loraEnabled());
    QCOMPARE(config()->redundancy(), uchar(255));
    QCOMPARE(config()->devEui(), u"0a1b2c3d4e5f6071"_s); // in the device's case
    QCOMPARE(config()->appEui(), QString());
    QCOMPARE(config()->appKey(), u"000102030405060708090A0B0C0D0E0F"_s);
    QVERIFY(!config()->ackEnabled());
}

void TestLora::settingStopsAtTheFirstRefusal_data()
{
    QTest::addColumn<int>("accepted");
    QTest::newRow("at once") << 0;
    QTest::newRow("at the last") << 3;
    QTest::newRow("nowhere") << 4;
}

void TestLora::settingStopsAtTheFirstRefusal()
{
    QFETCH(int, accepted);
    QVERIFY(m_session->connectTo(ZepBoard::RANGER));
    const QStringList commands{u"AT+LORA_AEUI="_s, u"AT+LORA_AKEY=00,11,22,33,44,55,66,77,88,99,AA,BB,CC,DD,EE,FF"_s,
                               u"AT+LORA_ACK=1"_s, u"AT+LORA_REDUN=4"_s};
    config()->setAppKey(u"00112233445566778899AABBCCDDEEFF"_s);
    for (int i = 0; i < commands.size(); ++i) {
        m_session->peer.answer(commands.at(i), {i < accepted ? u"+OK"_s : u"+ERROR=5"_s});
    }
    m_session->peer.forgetRequests();
    QCOMPARE(m_session->manager.setLoRaConfig(), accepted == 4);
    QCOMPARE(m_session->peer.requests(), commands.first(qMin(accepted + 1, 4)));
    QCOMPARE(m_session->log.last() == "[APP] Unable to set LoRa configuration"_L1, accepted < 4);

    m_session->manager.tx()->setLoraEnabled(true);
    m_session->peer.answer(u"AT+LORA_EN=1"_s, {u"+OK"_s});
    QVERIFY(m_session->manager.setLoRaEnable());
}

void TestLora::linesThatAreNoneLeaveTheFields()
{
    QVERIFY(m_session->connectTo(ZepBoard::TBX)); // it reads no LoRa line into fields
    config()->setDevEui(u"old"_s);
    config()->setAppKey(u"old"_s);
    m_session->log.clear();
    m_session->peer.say("+LORA_DEUI");
    m_session->peer.say("+LORA_AEUI");
    m_session->peer.say("+LORA_AKEY");
    QTRY_COMPARE(m_session->log.size(), 6);
    QCOMPARE(
        m_session->log.filter(u"[APP]"_s),
        (QStringList{u"[APP] Invalid EUI value!"_s, u"[APP] Invalid EUI value!"_s, u"[APP] Invalid key value!"_s}));
    QCOMPARE(config()->devEui() + config()->appKey(), u"oldold"_s);
}

void TestLora::endOfASessionForgetsInSilence()
{
    QVERIFY(m_session->connectTo(ZepBoard::RANGER));
    config()->setDevEui(u"00"_s);
    config()->setAppEui(u"11"_s);
    config()->setAppKey(u"22"_s);
    config()->setAckEnabled(false);
    config()->setRedundancy(9);
    m_session->manager.tx()->setLoraEnabled(true);
    int signalCount = 0;
    for (auto changed :
         {&LoRaConnectivity::devEuiChanged, &LoRaConnectivity::appEuiChanged, &LoRaConnectivity::appKeyChanged,
          &LoRaConnectivity::ackEnabledChanged, &LoRaConnectivity::redundancyChanged}) {
        connect(config(), changed, this, [&signalCount] { ++signalCount; });
    }
    m_session->manager.disconnect();
    QCOMPARE(signalCount, 0);
    QCOMPARE(config()->devEui() + config()->appEui() + config()->appKey(), QString());
    QVERIFY(config()->ackEnabled());
    QCOMPARE(config()->redundancy(), uchar(4));
    QVERIFY(m_session->manager.tx()->loraEnabled());
    config()->setAckEnabled(true); // no change, and told all the same
    QCOMPARE(signalCount, 1);
}

void TestLora::wireFormHasNoCommaAtTheEnd_data()
{
    QTest::addColumn<QString>("wire");
    for (const char *wire : {"", "0", "0a", "0a,1", "00,11,22,33,44,55,66,77"}) {
        QTest::newRow(wire) << QString::fromLatin1(wire);
    }
}

void TestLora::wireFormHasNoCommaAtTheEnd()
{
    QFETCH(QString, wire);
    QCOMPARE(LoRaConnectivity::toWireHex(QString(wire).remove(u',')), wire);
}

QTEST_GUILESS_MAIN(TestLora)
#include "tst_lora.moc"
