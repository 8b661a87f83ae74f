// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PayloadModel.h"
#include "PeriodicProfile.h"
#include "ScriptedSession.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

// A whole ZepManager on a pseudo terminal; the far end is scripted, so that it can be silent, late or wrong.
class TestZepManager : public QObject
{
    Q_OBJECT

    bool connectTo(ZepBoard::Module module, const QString &baudRate = u"Default"_s)
    {
        return m_session->connectTo(module, baudRate);
    }

    std::unique_ptr<ScriptedSession> m_session;
    ScriptedPeer *m_peer = nullptr;
    ZepManager *m_manager = nullptr;

private Q_SLOTS:
    void init()
    {
        m_session = std::make_unique<ScriptedSession>();
        m_peer = &m_session->peer;
        m_manager = &m_session->manager;
    }

    void cleanup() { m_session.reset(); }

    void deviceThatDoesNotAnswerPingIsNoSession()
    {
        QSignalSpy error(m_manager->serialPort(), &SerialPortManager::serialError);
        for (const auto &[answer, told] : {std::pair{QStringList(), u"[APP] AT command request timeout!"_s},
                                           {{u"+ERROR=6"_s}, u"[APP] The AT command is unknown"_s}}) {
            m_peer->answer(u"AT+PING=?"_s, answer);
            QVERIFY(!connectTo(ZepBoard::ZEP2));
            QCOMPARE(error.takeFirst().constFirst().toString(), u"Unable to contact ZEP2"_s);
            QCOMPARE(m_session->log.last(), told);
            m_manager->disconnect();
            m_manager->disconnect(); // a second one harms nothing
            QVERIFY(error.isEmpty() && !m_manager->board());
        }
        QCOMPARE(m_peer->requests(), QStringList(2, u"AT+PING=?"_s));
        m_peer->answer(u"AT+PING=?"_s, {u"+OK"_s});
        QVERIFY(connectTo(ZepBoard::ZEP2));
    }

    void unansweredIdentityReadsNA()
    {
        m_manager->setMode(ZepManager::EXPERT);
        QVERIFY(connectTo(ZepBoard::ZEP1));
        QCOMPARE(m_manager->board()->txFrequency(), 401650000U);
        for (const QString &word : {u"ID"_s, u"FW"_s, u"SN"_s, u"ADDR"_s, u"ATXFRQ"_s}) {
            m_peer->answer("AT+"_L1 + word + "=?"_L1, {u"+ERROR=2"_s});
        }
        m_manager->getHwInfo();
        m_manager->getTxFrequency();
        const ZepBoard *board = m_manager->board();
        QCOMPARE(board->id() + board->firmwareVersion() + board->serialNumber(), u"NANANA"_s);
        QCOMPARE(board->txFrequency(), 0U);
        m_manager->disconnect();
        QVERIFY(connectTo(ZepBoard::ZEP2));
        QCOMPARE(m_manager->board()->addr(), u"NA"_s);
    }

    void identificationAsksInOrder_data()
    {
        QTest::addColumn<ZepBoard::Module>("module");
        QTest::addColumn<ZepManager::Mode>("mode");
        QTest::addColumn<QString>("questions");
        QTest::addColumn<QString>("baudRate");
        QTest::addColumn<int>("portSpeed");
        const QString any = u"Default"_s;
        QTest::newRow("ZEP1") << ZepBoard::ZEP1 << ZepManager::BASIC << u"PING ID FW SN"_s << any << 9600;
        QTest::newRow("ZEP1, expert") << ZepBoard::ZEP1 << ZepManager::EXPERT << u"PING ID FW SN ATXFRQ PWR"_s
                                      << u"115200"_s << 115200;
        QTest::newRow("ZEP2, expert") << ZepBoard::ZEP2 << ZepManager::EXPERT << u"PING ID FW ADDR RCONF UDATE"_s
                                      << u"nonsense"_s << 9600;
        QTest::newRow("TBX") << ZepBoard::TBX << ZepManager::BASIC << u"PING ID FW ADDR RCONF UDATE"_s << any << 9600;
        const QString all =
            u"PING ID FW PREPASS_EN UDATE ZEP_REDUN LORA_EN LORA_REDUN LORA_DEUI LORA_AEUI LORA_AKEY "
            "LORA_ACK ALRT_LIGHT ALRT_ACC ALRT_DRYC ALRT_PB PACQ_SENS ALRT_SENS PACQ POS AOP PREPASS_CFG"_s;
        QTest::newRow("Ranger") << ZepBoard::RANGER << ZepManager::BASIC << all << any << 115200;
        QTest::newRow("slow Ranger") << ZepBoard::RANGER << ZepManager::BASIC << all << u"9600"_s << 9600;
    }

    void identificationAsksInOrder()
    {
        QFETCH(ZepBoard::Module, module);
        QFETCH(ZepManager::Mode, mode);
        QFETCH(QString, questions);
        QFETCH(QString, baudRate);
        QFETCH(int, portSpeed);
        m_manager->setMode(mode);
        m_manager->tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE);
        QVERIFY(connectTo(module, baudRate));
        QCOMPARE(m_manager->board()->portSettings().baudRate, portSpeed);
        QStringList asked = m_peer->requests();
        if (questions.endsWith("UDATE"_L1)) {
            const QDateTime clock = QDateTime::fromString(asked.last().section(u'=', 1), Qt::ISODate);
            QVERIFY(qAbs(clock.secsTo(QDateTime::currentDateTimeUtc())) <= 5);
            asked.last() = u"AT+UDATE=?"_s; // set, where the others ask
        }
        QCOMPARE(asked.join(u' ').remove(QRegularExpression(u"AT\\+|=\\?"_s)), questions);
        QCOMPARE(m_manager->board()->id(), u"00AABB"_s);
        QCOMPARE(m_manager->tx()->selectedProfile(),
                 module == ZepBoard::RANGER ? TxManager::PREPASS_ON_MODULE : TxManager::PREPASS);
        QCOMPARE(m_manager->tx()->modulationModel()->modulation(),
                 questions.contains("RCONF"_L1) ? u"HRA2"_s : u"UNKNOWN"_s);
    }

    void lateAnswerStillReachesTheBoard()
    {
        m_manager->setMode(ZepManager::EXPERT);
        QVERIFY(connectTo(ZepBoard::ZEP1));
        QCOMPARE(m_manager->board()->txPower(), ushort(1000));
        m_peer->answer(u"AT+PWR=?"_s, {});
        m_manager->getTxPower();
        QVERIFY(m_session->log.contains(u"[APP] AT command request timeout!"_s));
        QCOMPARE(m_manager->board()->txPower(), ushort(0));
        m_peer->say("+PWR=750");
        QTRY_COMPARE(m_manager->board()->txPower(), ushort(750));
    }

    void onlyALineWithAPlusSignEndsAWait()
    {
        QVERIFY(connectTo(ZepBoard::ZEP2));
        for (const auto &[answer, told] :
             {std::pair{u"booting|RANGER -- SLEEP + rest|"_s,
                        u"[APP] AT command request timeout!|[APP] Unable to get radio configuration"_s},
              {u"+RCONF=nonsense"_s, u"[APP] Unable to parse message from ZEP2|[APP] Unable to parse RCONF data"_s},
              {u"+RX=0A"_s, QString()}}) { // of its own accord, and taken for the answer
            m_peer->answer(u"AT+RCONF=?"_s, answer.split(u'|'));
            m_session->log.clear();
            m_manager->getRadioConfig();
            QCOMPARE(m_manager->board()->isAwake(), !answer.contains("SLEEP"_L1));
            m_manager->board()->setIsAwake(true);
            QCOMPARE(m_session->log.filter(u"[APP]"_s).mid(1).join(u'|'), told);
        }
    }

    void refusedPowerShowsTheOldOneAgain()
    {
        QVERIFY(connectTo(ZepBoard::ZEP1));
        m_manager->getTxPower();
        m_peer->answer(u"AT+PWR=100"_s, {u"+ERROR=5"_s});
        QSignalSpy power(m_manager->board(), &ZepBoard::txPowerChanged);
        QVERIFY(!m_manager->setTxPower(100));
        QCOMPARE(power.count(), 1);
        QCOMPARE(m_manager->board()->txPower(), ushort(1000));
    }

    void linesAreToldInWords_data()
    {
        QTest::addColumn<ZepBoard::Module>("module");
        QTest::addColumn<QString>("words"); // separated by bars
        const auto row = [](ZepBoard::Module module, const char *line, const QString &words) {
            QTest::newRow(line) << module << words;
        };
        row(ZepBoard::ZEP1, "+AFMT=1,0,32", u"Message format: Raw format"_s);
        row(ZepBoard::ZEP1, "+AFMT=1,16,32", u"Message format: Sarvane standard format"_s);
        row(ZepBoard::ZEP1, "+PING", u"Unsupported AT command"_s);
        row(ZepBoard::ZEP1, "1 + 1", u"Unable to parse message from ZEP1"_s);
        row(ZepBoard::ZEP2, "+ATXRP=4,60000", u"---- Tx configuration ----|Redundancy: 4 - Period: 60s"_s);
        row(ZepBoard::ZEP2, "+TXFIFO=0,AB,0x4", QString());
        row(ZepBoard::ZEP2, "+TXFIFO=end",
            u"Tx FIFO content description (respective order):|"
            "transmitted (0 or 1), data (hexadecimal), attribute bitmap"_s);
        row(ZepBoard::RANGER, "RANGER -- PARAMETERS RESTORED", u"Config uploaded successfully!"_s);
        row(ZepBoard::RANGER, "+TX=0,AB", QString()); // which nobody has asked for
    }

    void linesAreToldInWords()
    {
        QFETCH(ZepBoard::Module, module);
        QVERIFY(connectTo(module));
        m_session->log.clear();
        m_peer->say(QTest::currentDataTag());
        QTRY_VERIFY(!m_session->log.isEmpty());
        m_session->log.removeFirst(); // the line itself
        QTEST(m_session->log.join(u'|').remove(u"[APP] "_s), "words");
    }

    void boardThatStillSleepsAsksAgain()
    {
        QSignalSpy asked(m_manager, &ZepManager::userActionRequested);
        QObject::connect(m_manager, &ZepManager::userActionRequested, &asked, [this, &asked] {
            m_peer->say(asked.count() < 2 ? "RANGER -- SLEEP" : "RANGER -- BUTTON PUSHED");
        });
        m_manager->connect(ZepBoard::RANGER, m_peer->path(), u"Default"_s);
        QCOMPARE(asked.count(), 2);
        QVERIFY(m_manager->board()->isAwake());
    }

    void waitsEndWhenTheApplicationQuits()
    {
        m_peer->answer(u"AT+PING=?"_s, {});
        // The one waits for the wake-up button, the other for an answer.
        for (const ZepBoard::Module module : {ZepBoard::RANGER, ZepBoard::ZEP2}) {
            ZepManager manager(nullptr);
            QTimer::singleShot(0, this, [] {
                QEvent quit(QEvent::Quit);
                QCoreApplication::sendEvent(QCoreApplication::instance(), &quit);
            });
            QElapsedTimer time;
            time.start();
            manager.connect(module, m_peer->path(), u"Default"_s);
            QVERIFY(time.elapsed() < 900); // less than the time-out of the request
        }
    }

    void payloadBecomesTheCommandsOfItsBoard_data()
    {
        QTest::addColumn<ZepBoard::Module>("module");
        QTest::addColumn<QByteArray>("option");
        QTest::addColumn<QStringList>("commands");
        QTest::newRow("ZEP1") << ZepBoard::ZEP1 << QByteArray("optionAck") << QStringList{u"AT+TX=00000000"_s};
        QTest::newRow("ZEP2") << ZepBoard::ZEP2 << QByteArray() << QStringList{u"AT+ATXRP=0"_s, u"AT+TX=00000000"_s};
        QTest::newRow("ZEP2, acknowledgement")
            << ZepBoard::ZEP2 << QByteArray("optionAck") << QStringList{u"AT+ATXRP=0"_s, u"AT+TX=000000000000,0x4"_s};
        QTest::newRow("TBX, downlink") << ZepBoard::TBX << QByteArray("optionMail")
                                       << QStringList{u"AT+ATXRP=0"_s, u"AT+TX=000000000000,0x1"_s};
    }

    void payloadBecomesTheCommandsOfItsBoard()
    {
        QFETCH(ZepBoard::Module, module);
        QFETCH(QByteArray, option);
        QFETCH(QStringList, commands);
        QVERIFY(connectTo(module));
        TxManager *tx = m_manager->tx();
        PayloadModel *payloads = tx->payloadListModel();
        const QString message = commands.last().section(u'=', 1).section(u',', 0, 0);
        tx->addPayloadItem(message);
        if (!option.isEmpty()) {
            payloads->setData(payloads->index(0), true, payloads->roleNames().key(option));
        }
        m_peer->answer(commands.last(), {u"+OK"_s});
        m_peer->forgetRequests();
        tx->periodicProfile()->setRedundancy(1);
        tx->start(1);
        QVERIFY(tx->ackPending());
        m_peer->say("+TX=0," + message.toLatin1());
        QTRY_VERIFY(m_session->log.contains(u"[APP] --- Tx SEQUENCE COMPLETE (1/1) ---"_s));
        QCOMPARE(m_peer->requests(), commands);
        QVERIFY(m_session->log.contains("[APP] Data "_L1 + message + " successfully transmitted! (1/1)"_L1));
        QVERIFY(!tx->ackPending());
        tx->stop();
        if (module == ZepBoard::ZEP1) {
            QCOMPARE(m_peer->requests(), commands); // it has nothing to flush
        }
    }

    void resetWhileTheCommandWaitsSendsNothingMore()
    {
        QVERIFY(connectTo(ZepBoard::TBX));
        TxManager *tx = m_manager->tx();
        tx->addPayloadItem(u"00000000"_s);
        m_peer->answer(u"AT+ATXRP=0"_s, {u"+ASSERT=watchdog"_s});
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"ZEP ASSERT!.*watchdog"_s));
        tx->start(1);
        QCOMPARE(m_peer->requests().constLast(), u"AT+ATXRP=0"_s);
        QVERIFY(!tx->sequenceRunning());
        QVERIFY(!tx->ackPending());
    }

    void disconnectWaitsSixSecondsForAnAnswerAndNoLonger()
    {
        QVERIFY(connectTo(ZepBoard::ZEP1));
        TxManager *tx = m_manager->tx();
        tx->addPayloadItem(u"00000000"_s);
        m_peer->answer(u"AT+TX=00000000"_s, {u"+OK"_s});
        tx->start(1);
        QVERIFY(tx->ackPending());
        QElapsedTimer time;
        time.start();
        m_manager->disconnect();
        QVERIFY(time.elapsed() > 5500 && time.elapsed() < 7000); // a timer may be five percent off
        QVERIFY(!tx->ackPending());
        QVERIFY(!m_manager->board());
    }

    void txErrorFreesTheSequence()
    {
        QVERIFY(connectTo(ZepBoard::ZEP2));
        TxManager *tx = m_manager->tx();
        tx->addPayloadItem(u"00000000"_s);
        m_peer->answer(u"AT+TX=00000000"_s, {u"+OK"_s});
        for (const char *status : {"7", "-1", "4294967295"}) {
            tx->start(1);
            QVERIFY(tx->ackPending());
            m_peer->say(QByteArray("+TX=") + status + ",");
            QTRY_VERIFY(!tx->ackPending());
            QCOMPARE(m_session->log.last(), "[APP] A Tx error occured ("_L1 + QLatin1String(status) + u')');
            QCOMPARE(tx->payloadListModel()->data(tx->payloadListModel()->index(0), PayloadModel::TxCountRole).toInt(),
                     0);
            tx->stop();
        }
    }

    void deviceAssertionBringsEverythingToRest()
    {
        QVERIFY(connectTo(ZepBoard::ZEP2));
        TxManager *tx = m_manager->tx();
        tx->addPayloadItem(u"00000000"_s);
        m_peer->answer(u"AT+TX=00000000"_s, {u"+OK"_s});
        tx->applyUtcOffset(3600, false);
        tx->start(1);
        QVERIFY(tx->ackPending());
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"ZEP ASSERT!.*stack.c:12"_s));
        m_peer->say("+ASSERT=stack.c:12");
        QTRY_VERIFY(!tx->ackPending());
        QVERIFY(!tx->sequenceRunning());
        QVERIFY(m_session->log.contains(u"[APP] ZEP ASSERT! stack.c:12"_s));
        QVERIFY(m_session->log.last().startsWith("[APP] UTC time restored ("_L1));
    }

    void stoppingFlushesOnlyWhatTheModuleHolds()
    {
        QVERIFY(connectTo(ZepBoard::TBX));
        TxManager *tx = m_manager->tx();
        PayloadModel *payloads = tx->payloadListModel();
        tx->addPayloadItem(u"000000000000"_s);
        m_peer->answer(u"AT+TX=000000000000,0x4"_s, {u"+OK"_s});
        m_peer->answer(u"AT+TX=000000000000,0x1"_s, {u"+OK"_s});

        payloads->setData(payloads->index(0), true, PayloadModel::OptionAckRole);
        tx->start(1);
        QVERIFY(tx->ackPending());
        tx->stop();
        QCOMPARE(m_peer->requests().constLast(), u"AT+TXFIFO="_s);
        QVERIFY(!tx->ackPending());

        payloads->setData(payloads->index(0), false, PayloadModel::OptionAckRole);
        payloads->setData(payloads->index(0), true, PayloadModel::OptionMailRole);
        tx->start(1);
        m_peer->say("+TX=0,000000000000");
        QTRY_VERIFY(!tx->ackPending());
        tx->stop();
        QCOMPARE(m_peer->requests().constLast(), u"AT+TX=000000000000,0x1"_s);
    }

    void radioConfigurationIsWhatTheDeviceReports()
    {
        QVERIFY(connectTo(ZepBoard::ZEP2));
        const QString request = u"AT+RCONF=00112233445566778899AABBCCDDEEFF"_s;
        m_peer->answer(request, {u"+OK"_s});
        m_peer->answer(u"AT+RCONF=?"_s, {u"+RCONF=1,2,3,HRZ"_s});
        m_manager->setRadioConf("00112233445566778899aabbccddeeff");
        QCOMPARE(m_peer->requests().last(2), // a copy; clazy:exclude=detaching-temporary
                 (QStringList{request, u"AT+RCONF=?"_s}));
        QCOMPARE(m_manager->tx()->modulationModel()->modulation(), u"HRZ"_s);

        m_peer->answer(request, {u"+ERROR=5"_s});
        m_manager->setRadioConf("00112233445566778899aabbccddeeff");
        QCOMPARE(m_session->log.last(), u"[APP] Cannot set radio configuration!"_s);
        QCOMPARE(m_peer->requests().constLast(), request);
    }

    void pulledCableIsToldOnceAndTheNextSessionWorks()
    {
        QVERIFY(connectTo(ZepBoard::ZEP1));
        QSignalSpy error(m_manager->serialPort(), &SerialPortManager::serialError);
        m_peer->hangUp();
        QTRY_COMPARE_WITH_TIMEOUT(error.count(), 1, 1000);
        m_manager->disconnect();
        m_session->log.clear();
        Q_EMIT m_manager->serialPort()->doneReading(u"+ID=00"_s);
        QCOMPARE(m_session->log, QStringList()); // a line without a session is dropped
        m_peer->plugAgain();
        QVERIFY(connectTo(ZepBoard::ZEP1));
        QCOMPARE(error.count(), 1);
        m_manager->disconnect();
        m_peer->answer(u"AT+PING=?"_s, {});
        QObject::connect(m_peer, &ScriptedPeer::requested, m_peer, &ScriptedPeer::hangUp, Qt::QueuedConnection);
        QVERIFY(!connectTo(ZepBoard::ZEP1)); // nor is it told twice in the middle of connecting
        QCOMPARE(error.count(), 2);
    }
};

QTEST_GUILESS_MAIN(TestZepManager)
#include "tst_zepmanager.moc"
