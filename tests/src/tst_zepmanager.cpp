// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Criticals.h"
#include "PayloadModel.h"
#include "PeriodicProfile.h"
#include "PrepassModel.h"
#include "PrepassProfile.h"
#include "SatelliteAopModel.h"
#include "ScriptedSession.h"

#include <ctime>

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSerialPort>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

// A whole ZepManager on a pseudo terminal; the far end is scripted, so that it can be silent, late or wrong.
class TestZepManager : public QObject
{
    Q_OBJECT

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
            QVERIFY(!m_session->connectTo(ZepBoard::ZEP2));
            QCOMPARE(error.takeFirst().constFirst().toString(), u"Unable to contact ZEP2"_s);
            QCOMPARE(m_session->log.last(), told);
            m_manager->disconnect();
            m_manager->disconnect(); // a second one harms nothing
            QVERIFY(error.isEmpty() && !m_manager->board());
        }
        QCOMPARE(m_peer->requests(), QStringList(2, u"AT+PING=?"_s));
        m_peer->answer(u"AT+PING=?"_s, {u"+OK"_s});
        QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    }

    void unansweredIdentityReadsNA()
    {
        m_manager->setMode(ZepManager::EXPERT);
        QVERIFY(m_session->connectTo(ZepBoard::ZEP1));
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
        QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
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
                                      << u"nonsense"_s << 9600;
        QTest::newRow("ZEP2") << ZepBoard::ZEP2 << ZepManager::BASIC << u"PING ID FW ADDR RCONF UDATE"_s << any << 9600;
        QTest::newRow("ZEP2, expert") << ZepBoard::ZEP2 << ZepManager::EXPERT << u"PING ID FW ADDR RCONF UDATE"_s
                                      << u"115200"_s << 115200;
        QTest::newRow("TBX") << ZepBoard::TBX << ZepManager::BASIC << u"PING ID FW ADDR RCONF UDATE"_s << u"115200"_s
                             << 115200;
        const QString all = "PING ID FW "_L1 + ScriptedSession::questionsToARanger();
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
        // What another session may have left, and its end.
        auto *port = m_manager->serialPort()->findChild<QSerialPort *>();
        port->setBaudRate(300);
        port->setDataBits(QSerialPort::Data7);
        port->setParity(QSerialPort::EvenParity);
        port->setStopBits(QSerialPort::TwoStop);
        port->setFlowControl(QSerialPort::HardwareControl);
        m_manager->tx()->modulationModel()->setModulation(ModulationModel::HRZ);
        m_manager->tx()->applyUtcOffset(3600, false);
        const QSignalSpy listed(m_manager->serialPort(), &SerialPortManager::portListModelChanged);
        m_manager->disconnect();
        QCOMPARE(listed.count(), 1);
        QElapsedTimer time;
        time.start();
        QVERIFY(m_session->connectTo(module, baudRate));
        QStringList asked = m_peer->requests();
        QVERIFY2(time.elapsed() >= 10 * asked.size(), "the device gets no pause");
        QCOMPARE(
            (QList<int>{port->baudRate(), port->dataBits(), port->parity(), port->stopBits(), port->flowControl()}),
            (QList<int>{portSpeed, 8, QSerialPort::NoParity, 1, QSerialPort::NoFlowControl}));
        if (questions.endsWith("UDATE"_L1)) {
            const QDateTime clock = QDateTime::fromString(asked.last().section(u'=', 1), Qt::ISODate);
            QVERIFY(qAbs(clock.secsTo(QDateTime::currentDateTimeUtc())) <= 5);
            asked.last() = u"AT+UDATE=?"_s; // set, where the others ask
        }
        QCOMPARE(asked.join(u' ').remove(QRegularExpression(u"AT\\+|=\\?"_s)), questions);
        QCOMPARE(m_manager->board()->id(), u"00AABB"_s);
        QCOMPARE(m_manager->board()->addr(), questions.contains("ADDR"_L1) ? u"1F2E"_s : QString());
        QCOMPARE(m_manager->tx()->selectedProfile(),
                 module == ZepBoard::RANGER ? TxManager::PREPASS_ON_MODULE : TxManager::PREPASS);
        QCOMPARE(m_manager->tx()->modulationModel()->modulation(),
                 questions.contains("RCONF"_L1) ? u"HRA2"_s : u"UNKNOWN"_s);
    }

    void lateAnswerStillReachesTheBoard()
    {
        m_manager->setMode(ZepManager::EXPERT);
        QVERIFY(m_session->connectTo(ZepBoard::ZEP1));
        QCOMPARE(m_manager->board()->txPower(), ushort(1000));
        m_peer->answer(u"AT+PWR=?"_s, {});
        const std::clock_t used = std::clock();
        QElapsedTimer time;
        time.start();
        m_manager->getTxPower();
        const qint64 share = (std::clock() - used) * 100 / (CLOCKS_PER_SEC / 1000) / time.elapsed();
        QVERIFY2(share < 5, qPrintable(QString::number(share) + " percent of a core for a wait"_L1));
        QVERIFY(time.elapsed() >= 1000);
        QVERIFY(m_session->log.contains(u"[APP] AT command request timeout!"_s));
        QCOMPARE(m_manager->board()->txPower(), ushort(0));
        m_peer->say("+PWR=750");
        QTRY_COMPARE(m_manager->board()->txPower(), ushort(750));
    }

    void onlyALineWithAPlusSignEndsAWait()
    {
        QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
        expectCritical("Unable to extract RCONF data");
        expectCritical("Unable to extract ERROR data");
        for (const auto &[answer, told] :
             {std::pair{u"booting|RANGER -- SLEEP + rest|"_s,
                        u"[APP] AT command request timeout!|[APP] Unable to get radio configuration"_s},
              {u"+RCONF=nonsense"_s, u"[APP] Unable to parse message from ZEP2|[APP] Unable to parse RCONF data"_s},
              {u"+ERROR=2#"_s, u"[APP] Unable to parse message from ZEP2|[APP] Unable to parse ERROR data|"
                               "[APP] Unable to get radio configuration"_s},
              {u"+RX=0A"_s, QString()}}) { // of its own accord, and taken for the answer
            m_peer->answer(u"AT+RCONF=?"_s, answer.split(u'|'));
            m_session->log.clear();
            m_manager->getRadioConfig();
            QCOMPARE(m_manager->board()->isAwake(), !answer.contains("SLEEP"_L1));
            m_manager->board()->setIsAwake(true);
            QCOMPARE(m_session->log.filter(u"[APP]"_s).mid(1).join(u'|'), told);
        }
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
        QVERIFY(m_session->connectTo(module));
        if (module == ZepBoard::ZEP1) {
            allowComplaintsOfTheWire();
        }
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
            QSignalSpy log(manager.logger(), &Logger::logCreated);
            manager.connect(module, m_peer->path(), u"Default"_s);
            QVERIFY(!log.isEmpty() && !log.last().at(0).toString().contains("timeout"_L1));
        }
    }

    void payloadBecomesTheCommandsOfItsBoard_data()
    {
        QTest::addColumn<ZepBoard::Module>("module");
        QTest::addColumn<TxManager::Profile>("profile");
        QTest::addColumn<PayloadModel::Role>("option");
        QTest::addColumn<QString>("commands"); // to the end of the sequence; * is the payload
        const auto row = [](const char *name, ZepBoard::Module module, TxManager::Profile profile,
                            PayloadModel::Role option, const char *commands) {
            QTest::newRow(name) << module << profile << option << QString(commands);
        };
        constexpr auto none = PayloadModel::MessageRole;
        constexpr auto ack = PayloadModel::OptionAckRole;
        row("ZEP1", ZepBoard::ZEP1, TxManager::PERIODIC, ack, "TX=*");
        row("ZEP2", ZepBoard::ZEP2, TxManager::PERIODIC, none, "ATXRP=0 TX=*");
        row("acknowledgement", ZepBoard::ZEP2, TxManager::PERIODIC, ack, "ATXRP=0 TX=*,0x4 TXFIFO=");
        row("stopped before it", ZepBoard::TBX, TxManager::PERIODIC, ack, "ATXRP=0 TX=*,0x4 TXFIFO=");
        row("downlink", ZepBoard::TBX, TxManager::PERIODIC, PayloadModel::OptionMailRole, "ATXRP=0 TX=*,0x1");
        row("table", ZepBoard::ZEP2, TxManager::PREPASS, ack, "ATXRP=0 TX=*"); // which takes no option
        row("module", ZepBoard::TBX, TxManager::PREPASS_ON_MODULE, ack,
            "TXFIFO= NEXTPASS=3,3 ATXRP=4,60000 TXDATA=*,0x4 TXFIFO=");
    }

    void payloadBecomesTheCommandsOfItsBoard()
    {
        QFETCH(ZepBoard::Module, module);
        QFETCH(TxManager::Profile, profile);
        QFETCH(PayloadModel::Role, option);
        QFETCH(QString, commands);
        QVERIFY(m_session->connectTo(module));
        TxManager *tx = m_manager->tx();
        PayloadModel *payloads = tx->payloadListModel();
        const QDateTime now = tx->utcDateTime();
        const QString date = now.toString(u"yyyy-M-dTH:m:sZ"_s);
        m_peer->answer(u"AT+NEXTPASS=*"_s, {u"+NEXTPASS=A,%1,%1,600,45"_s.arg(date)});
        for (const QString &word : {u"TX"_s, u"TXDATA"_s, u"ATXRP"_s}) {
            m_peer->answer(u"AT+%1=*"_s.arg(word), {u"+OK"_s});
        }
        m_peer->forgetRequests();
        const QString message = QString(option == PayloadModel::MessageRole ? 8 : 12, u'0');
        tx->addPayloadItem(message);
        tx->setSelectedProfile(profile);
        payloads->setRedundancy(0, 1);
        if (option != PayloadModel::MessageRole) {
            payloads->setData(payloads->index(0), true, option);
        }
        tx->prepassListModel()->addPrepass({}, now.addSecs(-10), QTime(0, 10), 0, false);
        QMetaObject::invokeMethod(tx, "onUtcTimeRefreshOver"); // inside of it
        tx->prepassProfile()->satelliteAopModel()->updateOrAddSatellite(
            'A', {}, 0, 0, 0, 0, 0, 0, {}, SatelliteAop::DNLK_NA, SatelliteAop::UPLK_NA); // none to be downloaded
        tx->start(1);
        QVERIFY(tx->ackPending());
        if (QTest::currentDataTag() != "stopped before it"_L1) {
            QTRY_VERIFY(profile != TxManager::PREPASS_ON_MODULE ||
                        tx->findChild<QTimer *>(u"scheduleTimer"_s)->remainingTime() > 60000); // until its end
            m_peer->say("+TX=0," + message.toLatin1());
            QTRY_VERIFY(m_session->log.contains(u"[APP] --- Tx SEQUENCE COMPLETE (1/1) ---"_s));
            QVERIFY(m_session->log.contains("[APP] Data "_L1 + message + " successfully transmitted! (1/1)"_L1));
            QVERIFY(!tx->ackPending());
        }
        tx->stop();
        QVERIFY(!tx->ackPending());
        QCOMPARE(m_peer->requests().join(u' ').remove(u"AT+"_s), commands.replace(u'*', message));
    }

    void disconnectWaitsSixSecondsForAnAnswerAndNoLonger()
    {
        QVERIFY(m_session->connectTo(ZepBoard::ZEP1));
        TxManager *tx = m_manager->tx();
        tx->addPayloadItem(u"00000000"_s);
        m_peer->answer(u"AT+TX=00000000"_s, {u"+OK"_s});
        tx->start(1);
        QVERIFY(tx->ackPending());
        QElapsedTimer time;
        time.start();
        m_manager->disconnect();
        QVERIFY(time.elapsed() >= 6000 && time.elapsed() < 10000);
        QVERIFY(!tx->ackPending());
        QVERIFY(!m_manager->board());
    }

    void whatSettlesATx_data()
    {
        QTest::addColumn<ZepBoard::Module>("module");
        QTest::addColumn<QString>("logged"); // behind the line itself
        const auto row = [](ZepBoard::Module module, const char *line, const char *logged) {
            QTest::newRow(line) << module << QString(logged);
        };
        row(ZepBoard::ZEP2, "+TX=7,", "A Tx error occured (7)");
        row(ZepBoard::TBX, "+TX=-1,", "A Tx error occured (-1)");
        row(ZepBoard::ZEP2, "+TX=4294967295,", "A Tx error occured (4294967295)");
        row(ZepBoard::ZEP1, "+TX=1,00", "Unable to parse message from ZEP1|Unable to parse TX data");
        row(ZepBoard::ZEP2, "+TX=0", "Unable to parse message from ZEP2|Unable to parse TX data");
        row(ZepBoard::TBX, "+TX=#,0000", "Unable to parse message from TBX|Unable to parse TX data");
        row(ZepBoard::ZEP2, "+ERROR=21", "The message queue is already full");
        row(ZepBoard::ZEP1, "+ERROR", "Unable to parse message from ZEP1|Unable to parse ERROR data");
    }

    void whatSettlesATx()
    {
        QFETCH(const ZepBoard::Module, module);
        QVERIFY(m_session->connectTo(module));
        allowComplaintsOfTheWire();
        TxManager *tx = m_manager->tx();
        tx->periodicProfile()->setRedundancy(2);
        tx->addPayloadItem(u"00000000"_s);
        m_peer->answer(u"AT+TX=00000000"_s, {u"+OK"_s});
        tx->start(1);
        QVERIFY(tx->ackPending());
        m_session->log.clear();
        m_peer->say(QTest::currentDataTag());
        QTRY_VERIFY(!tx->ackPending());
        m_session->log.removeFirst();
        QTEST(m_session->log.join(u'|').remove(u"[APP] "_s), "logged");
        auto *timer = tx->findChild<QTimer *>(u"scheduleTimer"_s);
        QVERIFY(timer->isActive());
        timer->start(0); // the next Tx goes out
        QTRY_VERIFY(tx->ackPending());
    }

    void lineThatEndsAWaitLetsItsCallerGoFirst()
    {
        QVERIFY(m_session->connectTo(ZepBoard::ZEP1));
        TxManager *tx = m_manager->tx();
        tx->periodicProfile()->setRedundancy(1);
        tx->addPayloadItem(u"00000000"_s);
        m_peer->answer(u"AT+TX=00000000"_s, {u"+OK"_s, u"+TX=0,00000000"_s, u"+ID=00000A"_s, u"+ID=00000B"_s});
        m_session->log.clear();
        tx->start(1); // the computer has slept since the request: all is there at once
        QTRY_COMPARE(m_manager->board()->id(), u"00000B"_s);
        QVERIFY(!tx->ackPending());
        QCOMPARE(m_session->log.filter(u"COMPLETE (1/1)"_s).size(), 1);
        QCOMPARE(m_session->log.filter(u"+ID"_s).join(u' '), u"[ZEP] +ID=00000A [ZEP] +ID=00000B"_s);

        m_peer->answer(u"AT+TX=00000000"_s, {u"+TX=0,00000000"_s}); // the "+OK" is lost: the result ends the wait
        tx->stop();
        tx->start(1);
        QTRY_COMPARE(m_session->log.filter(u"COMPLETE (1/1)"_s).size(), 2);
        QVERIFY(!tx->ackPending());
    }

    void deviceAssertionBringsEverythingToRest()
    {
        QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
        TxManager *tx = m_manager->tx();
        tx->addPayloadItem(u"00000000"_s);
        m_peer->answer(u"AT+TX=00000000"_s, {u"+OK"_s});
        const QString assertion = u"+ASSERT=stack.c:12"_s;
        // Instead of an answer, in one read behind it, and later.
        for (const QStringList &answer : {QStringList{assertion}, {u"+OK"_s, assertion}, {u"+OK"_s}}) {
            const bool isLater = !answer.contains(assertion);
            m_peer->answer(u"AT+ATXRP=0"_s, answer);
            tx->applyUtcOffset(3600, false);
            m_session->log.clear();
            expectCritical(QRegularExpression(u"ZEP ASSERT!.*stack.c:12"_s));
            tx->start(1);
            QCOMPARE(m_peer->requests().constLast(), isLater ? u"AT+TX=00000000"_s : u"AT+ATXRP=0"_s);
            QCOMPARE(tx->ackPending(), isLater);
            if (isLater) {
                m_peer->say("+ASSERT=stack.c:12");
            }
            QTRY_VERIFY(!tx->ackPending() && !tx->sequenceRunning());
            QVERIFY(m_session->log.contains(u"[APP] ZEP ASSERT! stack.c:12"_s));
            QVERIFY(!m_session->log.filter(u"[APP] UTC time restored ("_s).isEmpty());
        }
    }

    void lostLineEndsWhatWaitsAtOnce()
    {
        allowComplaintsOfTheWire();
        QSignalSpy error(m_manager->serialPort(), &SerialPortManager::serialError);
        // One of the many questions to a Ranger, and the first.
        for (const QString &request : {u"AT+UDATE=?"_s, u"AT+PING=?"_s}) {
            m_peer->answer(request, {});
            const auto connection =
                QObject::connect(m_peer, &ScriptedPeer::requested, m_peer, [this, request](const QString &asked) {
                    if (asked == request) {
                        m_peer->hangUp();
                    }
                });
            QElapsedTimer time;
            time.start();
            QCOMPARE(m_session->connectTo(ZepBoard::RANGER), request != "AT+PING=?"_L1);
            m_manager->tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE); // which has a queue to empty
            m_manager->disconnect();
            QVERIFY2(time.elapsed() < 1000, qPrintable(QString::number(time.elapsed())));
            QCOMPARE(m_peer->requests().constLast(), request);
            QCOMPARE(error.count(), 1); // and no second one when connecting fails
            error.clear();
            QObject::disconnect(connection);
            m_session->log.clear();
            Q_EMIT m_manager->serialPort()->doneReading(u"+ID=00"_s);
            QCOMPARE(m_session->log, QStringList()); // a line without a session is dropped
            m_peer->plugAgain();
        }
    }

    void sequenceHoldsStillWhenTheLineIsLost()
    {
        allowComplaintsOfTheWire();
        QVERIFY(m_session->connectTo(ZepBoard::ZEP1));
        TxManager *tx = m_manager->tx();
        tx->addPayloadItem(u"00000000"_s);
        m_peer->answer(u"AT+TX=00000000"_s, {u"+OK"_s});
        tx->start(1);
        m_peer->hangUp();
        QTRY_VERIFY(!tx->ackPending());
        QVERIFY(tx->sequenceRunning() && !tx->findChild<QTimer *>(u"scheduleTimer"_s)->isActive());
        QVERIFY(!m_session->log.filter(u"[APP] The evaluation kit"_s).isEmpty());
        m_manager->disconnect();
        QVERIFY(!tx->sequenceRunning());
        m_peer->plugAgain();
        QVERIFY(m_session->connectTo(ZepBoard::ZEP1));
        tx->start(1);
        QVERIFY(tx->ackPending() && tx->findChild<QTimer *>(u"scheduleTimer"_s)->isActive());
        m_peer->say("+TX=0,00000000");
        QTRY_VERIFY(!tx->ackPending());
    }
};

QTEST_GUILESS_MAIN(TestZepManager)
#include "tst_zepmanager.moc"
