// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LoRaConnectivity.h"
#include "ScriptedSession.h"

#include <QSignalSpy>
#include <QTest>

#include <list>
#include <numeric>

using namespace Qt::StringLiterals;

class TestLora : public QObject
{
    Q_OBJECT

    std::unique_ptr<ScriptedSession> m_session;

    LoRaConnectivity *config() const { return m_session->manager.tx()->loraConfig(); }

private Q_SLOTS:
    void init()
    {
        m_session.reset();
        m_session = std::make_unique<ScriptedSession>();
    }

    void firmwareBeforeTheStackIsNotAsked()
    {
        m_session->peer.answer(u"AT+FW=?"_s, {u"+FW=1,SW1.3.9"_s});
        QVERIFY(m_session->connectTo(ZepBoard::RANGER));
        m_session->peer.forgetRequests();
        m_session->manager.getLoRaConfig();
        QVERIFY(!m_session->manager.setLoRaConfig());
        QCOMPARE(m_session->log.last(), u"[APP] LORA CONFIG: This board is not compatible with LoRa"_s);
        QCOMPARE(m_session->peer.requests(), QStringList());
    }

    void answersAreConfinedAndTheEndForgetsThemInSilence()
    {
        for (const char *answer : {"EN=1", "REDUN=300", "DEUI=0a,1b,2c,3d,4e,5f,60,71",
                                   "AKEY=00,01,02,03,04,05,06,07,08,09,0A,0B,0C,0D,0E,0F", "ACK=0"}) {
            const QString line = QLatin1String(answer);
            m_session->peer.answer("AT+LORA_"_L1 + line.section(u'=', 0, 0) + "=?"_L1, {"+LORA_"_L1 + line});
        }
        QVERIFY(m_session->connectTo(ZepBoard::RANGER)); // which reads them
        QVERIFY(m_session->manager.tx()->loraEnabled() && !config()->ackEnabled());
        QCOMPARE(config()->redundancy(), uchar(255));
        QCOMPARE(config()->devEui(), u"0a1b2c3d4e5f6071"_s); // in the device's case
        QCOMPARE(config()->appKey(), u"000102030405060708090A0B0C0D0E0F"_s);

        std::list<QSignalSpy> spies;
        for (auto changed :
             {&LoRaConnectivity::devEuiChanged, &LoRaConnectivity::appEuiChanged, &LoRaConnectivity::appKeyChanged,
              &LoRaConnectivity::ackEnabledChanged, &LoRaConnectivity::redundancyChanged}) {
            spies.emplace_back(config(), changed);
        }
        const auto told = [&spies] {
            return std::accumulate(spies.cbegin(), spies.cend(), 0,
                                   [](int sum, const QSignalSpy &spy) { return sum + int(spy.count()); });
        };
        m_session->manager.disconnect();
        QVERIFY(config()->devEui().isEmpty() && config()->appKey().isEmpty());
        QVERIFY(config()->ackEnabled() && config()->redundancy() == 4);
        QCOMPARE(told(), 0);
        config()->setAckEnabled(true); // no change, and told all the same
        QCOMPARE(told(), 1);
    }

    void linesThatAreNoneLeaveTheFields()
    {
        QVERIFY(m_session->connectTo(ZepBoard::TBX)); // it reads no LoRa line into fields
        config()->setDevEui(u"old"_s);
        config()->setAppKey(u"old"_s);
        m_session->peer.say("+LORA_DEUI=1");
        m_session->peer.say("+LORA_AKEY");
        QTRY_COMPARE(m_session->log.last(), u"[APP] Invalid key value!"_s);
        QVERIFY(m_session->log.contains(u"[APP] Invalid EUI value!"_s));
        QCOMPARE(config()->devEui() + config()->appKey(), u"oldold"_s);
        QCOMPARE(LoRaConnectivity::toWireHex(u"0a1"_s), u"0a,1"_s);
    }
};

QTEST_GUILESS_MAIN(TestLora)
#include "tst_lora.moc"
