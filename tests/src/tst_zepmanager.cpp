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
    QSignalSpy *m_userAction = nullptr;

private Q_SLOTS:
    void init()
    {
        m_session = std::make_unique<ScriptedSession>();
        m_peer = &m_session->peer;
        m_manager = &m_session->manager;
        m_userAction = new QSignalSpy(m_manager, &ZepManager::userActionRequested);
    }

    void cleanup()
    {
        delete m_userAction;
        m_session.reset();
    }

    void deviceThatDoesNotAnswerPingIsNoSession_data()
    {
        QTest::addColumn<QStringList>("answer");
        QTest::newRow("silence") << QStringList();
        QTest::newRow("an error") << QStringList{u"+ERROR=6"_s};
    }

    void deviceThatDoesNotAnswerPingIsNoSession()
    {
        QFETCH(QStringList, answer);
        m_peer->answer(u"AT+PING=?"_s, answer);
        QSignalSpy error(m_manager->serialPort(), &SerialPortManager::serialError);
        QVERIFY(!connectTo(ZepBoard::ZEP2));
        QCOMPARE(error.count(), 1);
        QCOMPARE(error.first().first().toString(), u"Unable to contact ZEP2"_s);
        QVERIFY(m_session->log.contains(answer.isEmpty() ? u"[APP] AT command request timeout!"_s
                                                         : u"[APP] The AT command is unknown"_s));
        QCOMPARE(m_peer->requests(), QStringList{u"AT+PING=?"_s});

        m_peer->answer(u"AT+PING=?"_s, {u"+OK"_s});
        m_manager->disconnect();
        QVERIFY(!m_manager->board());
        QVERIFY(connectTo(ZepBoard::ZEP2));
    }

    void unansweredIdentityReadsNA()
    {
        m_manager->setMode(ZepManager::EXPERT);
        for (const ZepBoard::Module module : {ZepBoard::ZEP1, ZepBoard::ZEP2}) {
            QVERIFY(connectTo(module));
            const ZepBoard *board = m_manager->board();
            QCOMPARE(board->id(), u"00AABB"_s);
            for (const auto *word : {"ID", "FW", "SN", "ADDR", "ATXFRQ"}) {
                m_peer->answer("AT+"_L1 + QLatin1String(word) + "=?"_L1, {u"+ERROR=2"_s});
            }
            m_manager->getHwInfo();
            QCOMPARE(board->id(), u"NA"_s);
            QCOMPARE(board->firmwareVersion(), u"NA"_s);
            if (module == ZepBoard::ZEP1) {
                QCOMPARE(board->serialNumber(), u"NA"_s);
                QCOMPARE(board->txFrequency(), 401650000U);
                m_manager->getTxFrequency();
                QCOMPARE(board->txFrequency(), 0U);
            } else {
                QCOMPARE(board->addr(), u"NA"_s);
            }
            cleanup();
            init();
        }
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
        QStringList expected;
        for (const QString &word : questions.split(u' ')) {
            expected << "AT+"_L1 + word + "=?"_L1;
        }
        QCOMPARE(asked, expected);
        QCOMPARE(m_manager->board()->id(), u"00AABB"_s);
        QCOMPARE(m_manager->tx()->selectedProfile(),
                 module == ZepBoard::RANGER ? TxManager::PREPASS_ON_MODULE : TxManager::PREPASS);
        QCOMPARE(m_manager->tx()->modulationModel()->modulation(),
                 questions.contains("RCONF"_L1) ? u"HRA2"_s : u"UNKNOWN"_s);
    }

    void portThatIsMissingKeepsAHalfSessionUntilDisconnect()
    {
        QSignalSpy error(m_manager->serialPort(), &SerialPortManager::serialError);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"Unable to open port /nowhere/port .*"_s));
        m_manager->connect(ZepBoard::ZEP1, u"/nowhere/port"_s, u"9600"_s);
        QCOMPARE(error.count(), 1);
        QCOMPARE(error.first().first().toString(), u"Unable to open port /nowhere/port"_s);
        QVERIFY(m_manager->board());
        m_manager->disconnect();
        m_manager->disconnect(); // a second one harms nothing
        QVERIFY(!m_manager->board());
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
        m_peer->answer(u"AT+RCONF=?"_s, {u"booting"_s, u"RANGER -- SLEEP + rest"_s, u""_s});
        QVERIFY(m_manager->board()->isAwake());
        m_manager->getRadioConfig();
        QCOMPARE(m_session->log.last(), u"[APP] Unable to get radio configuration"_s);
        QVERIFY(!m_manager->board()->isAwake());
        m_manager->board()->setIsAwake(true);

        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"Unable to extract.*"_s));
        m_peer->answer(u"AT+RCONF=?"_s, {u"+RCONF=nonsense"_s});
        m_session->log.clear();
        m_manager->getRadioConfig();
        QCOMPARE(m_session->log,
                 (QStringList{u"[APP] AT+RCONF=?"_s, u"[ZEP] +RCONF=nonsense"_s,
                              u"[APP] Unable to parse message from ZEP2"_s, u"[APP] Unable to parse RCONF data"_s}));

        m_peer->answer(u"AT+RCONF=?"_s, {u"+RX=0A"_s}); // of its own accord, and taken for the answer
        m_session->log.clear();
        m_manager->getRadioConfig();
        QCOMPARE(m_session->log, (QStringList{u"[APP] AT+RCONF=?"_s, u"[ZEP] +RX=0A"_s}));
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

    void customCommandTakesTheOrdinaryPath()
    {
        QVERIFY(connectTo(ZepBoard::ZEP1));
        m_peer->answer(u"AT+ID=?"_s, {u"+ID:beef"_s});
        m_peer->answer(u"AT+PING=1"_s, {u"+PING"_s});
        QSignalSpy completed(m_manager, &ZepManager::customCmdCompleted);
        m_manager->requestCustomCmd(u"  AT+ID=?\n"_s);
        QCOMPARE(m_manager->board()->id(), u"BEEF"_s);
        m_manager->requestCustomCmd(u"AT+PING=1"_s);
        QCOMPARE(m_session->log.last(), u"[APP] Unsupported AT command"_s);
        QCOMPARE(completed.count(), 2);
    }

    void linesAreToldInWords_data()
    {
        QTest::addColumn<ZepBoard::Module>("module");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("raw format") << ZepBoard::ZEP1 << u"+AFMT=1,0,32"_s
                                    << QStringList{u"Message format: Raw format"_s};
        QTest::newRow("standard format") << ZepBoard::ZEP1 << u"+AFMT=1,16,32"_s
                                         << QStringList{u"Message format: Sarvane standard format"_s};
        QTest::newRow("repetition") << ZepBoard::ZEP2 << u"+ATXRP=4,60000"_s
                                    << QStringList{u"---- Tx configuration ----"_s, u"Redundancy: 4 - Period: 60s"_s};
        QTest::newRow("queue") << ZepBoard::ZEP2 << u"+TXFIFO=0,AB,0x4"_s << QStringList();
        QTest::newRow("end of the queue")
            << ZepBoard::ZEP2 << u"+TXFIFO=end"_s
            << QStringList{u"Tx FIFO content description (respective order):"_s,
                           u"transmitted (0 or 1), data (hexadecimal), attribute bitmap"_s};
        QTest::newRow("restored") << ZepBoard::RANGER << u"RANGER -- PARAMETERS RESTORED"_s
                                  << QStringList{u"Config uploaded successfully!"_s};
        QTest::newRow("a Tx answer to nobody") << ZepBoard::RANGER << u"+TX=0,AB"_s << QStringList();
        QTest::newRow("a plus sign inside")
            << ZepBoard::ZEP1 << u"1 + 1"_s << QStringList{u"Unable to parse message from ZEP1"_s};
    }

    void linesAreToldInWords()
    {
        QFETCH(ZepBoard::Module, module);
        QFETCH(QString, line);
        QFETCH(QStringList, words);
        QVERIFY(connectTo(module));
        m_session->log.clear();
        if (!line.startsWith(u'+') && line.contains(u'+')) {
            QTest::ignoreMessage(QtCriticalMsg, "Unable to extract command response id");
        }
        m_peer->say(line.toUtf8());
        QTRY_VERIFY(!m_session->log.isEmpty());
        m_session->log.removeFirst(); // the line itself
        for (QString &expected : words) {
            expected.prepend("[APP] "_L1);
        }
        QCOMPARE(m_session->log, words);
    }

    void cancelledWakeUpWritesNothingAndAsksAgain()
    {
        QVERIFY(connectTo(ZepBoard::RANGER));
        m_manager->board()->setIsAwake(false);
        m_peer->forgetRequests();
        m_userAction->clear();
        QObject::disconnect(m_manager, &ZepManager::userActionRequested, m_peer, nullptr);
        QObject::connect(m_manager, &ZepManager::userActionRequested, m_manager, &ZepManager::cancelModuleRequest,
                         Qt::QueuedConnection);
        m_manager->requestCustomCmd(u"AT+FW=?"_s);
        m_manager->requestCustomCmd(u"AT+FW=?"_s);
        QCOMPARE(m_userAction->count(), 2);
        QCOMPARE(m_session->log.count(u"[APP] Request has been cancelled"_s), 2);
        QCOMPARE(m_session->log.count(u"[APP] AT+FW=?"_s), 2 + 1); // logged, though it never left
        QCOMPARE(m_peer->requests(), QStringList());
    }

    void boardThatStillSleepsAsksAgain()
    {
        QObject::connect(m_manager, &ZepManager::userActionRequested, m_peer, [this] {
            m_peer->say(m_userAction->count() < 2 ? "RANGER -- SLEEP" : "RANGER -- BUTTON PUSHED");
        });
        m_manager->connect(ZepBoard::RANGER, m_peer->path(), u"Default"_s);
        QCOMPARE(m_userAction->count(), 2);
        QVERIFY(m_manager->board()->isAwake());
    }

    void wakeUpWaitEndsWithTheSession()
    {
        QSignalSpy error(m_manager->serialPort(), &SerialPortManager::serialError);
        QSignalSpy disconnected(m_manager, &ZepManager::disconnected);
        QObject::connect(m_manager, &ZepManager::userActionRequested, m_manager, &ZepManager::disconnect,
                         Qt::QueuedConnection);
        m_manager->connect(ZepBoard::RANGER, m_peer->path(), u"Default"_s);
        QCOMPARE(disconnected.count(), 1);
        QCOMPARE(error.count(), 0);
        QVERIFY(!m_manager->board());
    }

    void waitsEndWhenTheApplicationQuits_data()
    {
        QTest::addColumn<ZepBoard::Module>("module");
        QTest::newRow("waiting for the wake-up button") << ZepBoard::RANGER;
        QTest::newRow("waiting for an answer") << ZepBoard::ZEP2;
    }

    void waitsEndWhenTheApplicationQuits()
    {
        QFETCH(ZepBoard::Module, module);
        m_peer->answer(u"AT+PING=?"_s, {});
        QTimer::singleShot(0, this, [] {
            QEvent quit(QEvent::Quit);
            QCoreApplication::sendEvent(QCoreApplication::instance(), &quit);
        });
        QElapsedTimer time;
        time.start();
        m_manager->connect(module, m_peer->path(), u"Default"_s);
        QVERIFY(time.elapsed() < 900); // less than the time-out of the request
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
        for (const char *status : {"7", "-1"}) {
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
        QVERIFY(m_session->log.contains(
            u"[APP] A reset was triggered on device, stopping sequence and restoring UTC time..."_s));
        QVERIFY(m_session->log.contains(u"[APP] --- Tx SEQUENCE STOP/RESET ---"_s));
        QVERIFY(m_session->log.last().startsWith("[APP] UTC time restored ("_L1));
    }

    void stoppingFlushesOnlyWhatTheModuleHolds()
    {
        QVERIFY(connectTo(ZepBoard::TBX));
        TxManager *tx = m_manager->tx();
        PayloadModel *payloads = tx->payloadListModel();
        tx->addPayloadItem(u"000000000000"_s);
        m_peer->answer(u"AT+TXFIFO="_s, {u"+OK"_s});
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

        m_peer->answer(u"AT+RCONF=?"_s, {u"+RCONF=1,2,3,NOT_A_MODULATION"_s});
        m_manager->getRadioConfig();
        QCOMPARE(m_manager->tx()->modulationModel()->modulation(), QString());
        QCOMPARE(m_manager->tx()->modulationModel()->allowedSizeListStr(), QString());
    }

    void pulledCableIsToldOnceAndTheNextSessionWorks()
    {
        QVERIFY(connectTo(ZepBoard::ZEP1));
        QSignalSpy error(m_manager->serialPort(), &SerialPortManager::serialError);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"(Resource|Read|Unknown)Error: .*"_s));
        m_peer->hangUp();
        QTRY_COMPARE_WITH_TIMEOUT(error.count(), 1, 1000);
        QCOMPARE(error.first().first().toString(),
                 u"The evaluation kit is not reachable, it may have been unplugged"_s);
        QTest::qWait(300); // a storm would come now
        QCOMPARE(error.count(), 1);
        m_manager->disconnect();
        m_peer->plugAgain();
        QVERIFY(connectTo(ZepBoard::ZEP1));
    }

    void cablePulledWhileConnectingIsToldOnce()
    {
        QSignalSpy error(m_manager->serialPort(), &SerialPortManager::serialError);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"(Resource|Read|Unknown)Error: .*"_s));
        QObject::connect(m_peer, &ScriptedPeer::requested, m_peer, &ScriptedPeer::hangUp, Qt::QueuedConnection);
        m_peer->answer(u"AT+PING=?"_s, {});
        QVERIFY(!connectTo(ZepBoard::ZEP1));
        QCOMPARE(error.count(), 1);
    }

    void linesWithoutASessionAreDropped()
    {
        QVERIFY(connectTo(ZepBoard::ZEP1));
        m_manager->disconnect();
        m_session->log.clear();
        Q_EMIT m_manager->serialPort()->doneReading(u"+ID=00"_s);
        QCOMPARE(m_session->log, QStringList());
    }
};

QTEST_GUILESS_MAIN(TestZepManager)
#include "tst_zepmanager.moc"
