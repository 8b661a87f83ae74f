// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Criticals.h"
#include "HttpServer.h"
#include "PeriodicProfile.h"
#include "PrepassModel.h"
#include "PrepassProfile.h"
#include "SatelliteAopModel.h"
#include "ScriptedSession.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class TestZepPrediction : public QObject
{
    Q_OBJECT

    HttpServer m_server;
    std::unique_ptr<ScriptedSession> m_session;
    ZepManager *m_manager = nullptr;

    [[nodiscard]] PrepassProfile *profile() const { return m_manager->tx()->prepassProfile(); }
    [[nodiscard]] SatelliteAopModel *satellites() const { return profile()->satelliteAopModel(); }
    [[nodiscard]] QString lastRequest() const { return m_session->peer.requests().constLast(); }
    [[nodiscard]] QString lastLine() const { return m_session->log.last(); }

    void changeTo(ZepBoard::Module module)
    {
        m_manager->disconnect();
        QVERIFY(m_session->connectTo(module));
    }

    void answerAll(const QStringList &words, const QString &answer)
    {
        for (const QString &word : words) {
            m_session->peer.answer("AT+"_L1 + word + "=*"_L1, {answer});
        }
    }

    void say(const QString &line)
    {
        const qsizetype count = m_session->log.size();
        m_session->peer.say(line.toLatin1());
        QTRY_VERIFY(m_session->log.size() > count);
    }

    /// One of the web service's; the module knows it, too, if its \a ident is upper case.
    void addSatellite(QChar ident, int uplink = SatelliteAop::UPLK_HELIO_4_ON, double semiMajorAxis = 1)
    {
        for (const QString &name : {ident.isUpper() ? u"NA"_s : u"Web"_s, u"Sat "_s + ident}) {
            satellites()->updateOrAddSatellite(ident, QDateTime(QDate(2026, 1, 7), QTime(9, 5), Qt::UTC), semiMajorAxis,
                                               98.7, 344.1, -25.3, 101.4, -1.9, name, SatelliteAop::DNLK_HELIO_3_ON,
                                               static_cast<SatelliteAop::UplinkStatus>(uplink));
        }
    }

private Q_SLOTS:
    void init()
    {
        m_server.requests.clear();
        m_session.reset();
        m_session = std::make_unique<ScriptedSession>(m_server.url());
        m_manager = &m_session->manager;
        QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    }

    void refusedSettingLeavesWhatWasThere()
    {
        answerAll({u"UDATE"_s, u"POS"_s, u"PREPASS_CFG"_s, u"PREPASS_EN"_s, u"ZEP_REDUN"_s}, u"+ERROR=5"_s);
        QSignalSpy completed(m_manager->tx(), &TxManager::loadPrepassDataCompleted);
        QVERIFY(!m_manager->setModuleUtcDate(u"2031-03-05T23:58:30Z"_s));
        QCOMPARE(lastLine(), u"[APP] Unable to set UTC date on ZEP2"_s);
        QCOMPARE(completed.value(0).value(0), QVariant(QString()));
        QVERIFY(m_manager->tx()->utcDateTime().date().year() != 2031);
        QVERIFY(!m_manager->setGnssPosition(1, 2));
        QVERIFY(profile()->position().latitude == 0 && profile()->position().longitude == 0);
        QVERIFY(!m_manager->setPrepassConfig(1, 2, 3));
        QCOMPARE(lastLine(), u"[APP] Unable to set prediction pass config"_s);
        QVERIFY(!m_manager->setPrepassEnable(true) && !m_manager->setTxRedundancy(3));
        QCOMPARE(lastLine(), u"[APP] Unable to set Tx redundancy"_s);
        m_manager->disconnect();
        completed.clear();
        QVERIFY(!m_manager->setModuleUtcDate(u"2031-03-05T23:58:30Z"_s));
        QCOMPARE(completed.count(), 1); // without a session, too, the view stops waiting
    }

    void acceptedSettingIsSentInSixDigitsAndKept()
    {
        answerAll({u"POS"_s, u"PREPASS_CFG"_s}, u"+OK"_s);
        QVERIFY(m_manager->setModuleUtcDate(u"2031-12-31T12:58:30Z"_s));
        QCOMPARE(m_manager->tx()->utcDateTime().date(), QDate(2031, 12, 31));
        QVERIFY(m_manager->setGnssPosition(43.5612345, 0.00001));
        QCOMPARE(lastRequest(), u"AT+POS=43.5612,0.00001"_s);
        QVERIFY(m_manager->setPrepassConfig(2, 10.25, 4));
        QCOMPARE(lastRequest().remove(QRegularExpression(u"T12:58:..Z"_s)),
                 u"AT+PREPASS_CFG=43.5612,0.00001,2031-12-31,2032-01-02,10.25,90,4,1000,5,30"_s);
        QCOMPARE(profile()->config().minPassDuration, uchar(4));
    }

    void redundancyLandsInTheSelectedProfile()
    {
        changeTo(ZepBoard::RANGER); // the one that reports it
        for (const QString &line : {u"+PREPASS_EN=2"_s, u"+ZEP_REDUN=300"_s, u"+PREPASS_EN=0"_s, u"+ZEP_REDUN=9"_s}) {
            say(line);
        }
        QCOMPARE(m_manager->tx()->periodicProfile()->redundancy(), uchar(9));
        QCOMPARE(profile()->redundancy(), uchar(255)); // confined, not cut to 44
        changeTo(ZepBoard::ZEP2);                      // its lines are not read into fields
        say(u"+ZEP_REDUN=9"_s);
        QCOMPARE(m_manager->tx()->periodicProfile()->redundancy(), uchar(1)); // a sequence cannot send zero times
    }

    void reportedProfileIsAppliedWhenTheSequenceHasEnded()
    {
        TxManager *tx = m_manager->tx();
        tx->addPayloadItem(u"00000000"_s);
        answerAll({u"TX"_s, u"ATXRP"_s}, u"+OK"_s);
        tx->start(1);
        say(u"+PREPASS_EN=1"_s);
        QCOMPARE(tx->selectedProfile(), TxManager::PERIODIC);
        tx->stop();
        QCoreApplication::processEvents();
        QCOMPARE(tx->selectedProfile(), TxManager::PERIODIC); // it says what the answer that is awaited means
        say(u"+TX=0,00000000"_s);
        QTRY_COMPARE(tx->selectedProfile(), TxManager::PREPASS_ON_MODULE);
    }

    void uploadSendsEachSatelliteAUsableBulletin_data()
    {
        QTest::addColumn<ZepBoard::Module>("module");
        QTest::addColumn<QString>("uplinks"); // of the satellites A, b and C; the module does not know b
        QTest::addColumn<QString>("sent");    // AOP: ident and semi-major axis; SAT: ident and uplink
        QTest::newRow("next one's orbit") << ZepBoard::TBX << u"332"_s << u"A300,A3,C300,C2"_s;
        QTest::newRow("unknown one's orbit") << ZepBoard::ZEP2 << u"323"_s << u"A200,A3,C200,C3"_s;
        QTest::newRow("none in service") << ZepBoard::ZEP2 << u"333"_s << u"A100,A3,C100,C3"_s;
        QTest::newRow("no statuses for a Ranger") << ZepBoard::RANGER << u"222"_s << u"A100,C300"_s;
    }

    void uploadSendsEachSatelliteAUsableBulletin()
    {
        QFETCH(ZepBoard::Module, module);
        QFETCH(QString, uplinks);
        QFETCH(QString, sent);
        changeTo(module);
        answerAll({u"AOP"_s, u"SAT"_s}, u"+OK"_s);
        m_session->peer.forgetRequests();
        for (int i = 0; i < 3; ++i) {
            addSatellite("AbC"_L1.at(i), uplinks.at(i).digitValue(), 100 * (i + 1));
        }
        if (uplinks == "333"_L1) {
            expectCritical("All satellites are OUT OF SERVICE!");
        }
        QVERIFY(m_manager->setAopDataAndConstellationStatus());
        QStringList seen;
        for (const QString &request : m_session->peer.requests()) {
            const QStringList fields = request.section(u'=', 1).split(u',');
            QCOMPARE(fields.size(), request.startsWith("AT+AOP"_L1) ? 8 : 3);
            seen << fields.first() + fields.at(2);
        }
        QCOMPARE(seen.join(u','), sent);
        QVERIFY(m_session->log.contains(u"[APP] Satellite 'b' not supported, pass"_s));
        const QString copied = u"[APP] AOP data have expired for this satellite, copying data from Sat C (C)..."_s;
        QCOMPARE(m_session->log.contains(copied), sent.contains("A300"_L1));
    }

    void uploadTellsTheOutcomeOfTheLastCommandOnly()
    {
        addSatellite(u'b');
        QVERIFY(!m_manager->setAopDataAndConstellationStatus()); // nothing that the module knows
        addSatellite(u'A');
        answerAll({u"AOP"_s}, u"+ERROR=5"_s);
        answerAll({u"SAT"_s}, u"+OK"_s);
        QVERIFY(m_manager->setAopDataAndConstellationStatus());
        QVERIFY(m_session->log.contains(u"[APP] Unable to set AOP data"_s));
        answerAll({u"SAT"_s}, u"+ERROR=5"_s);
        QVERIFY(!m_manager->setAopDataAndConstellationStatus());
    }

    void downloadThatBringsNothingOrOutlivesTheSessionSendsNothing()
    {
        m_server.serve("200 OK", "{}"); // accepted, and no satellite in it
        expectCritical("All satellites are OUT OF SERVICE!");
        QVERIFY(!m_manager->setAopDataAndConstellationStatus());
        for (const bool upload : {true, false}) {
            satellites()->clear();
            QTimer::singleShot(0, m_manager, [this] { // another session has begun by the time that it ends
                changeTo(ZepBoard::TBX);
                addSatellite(u'A');
            });
            upload ? void(m_manager->setAopDataAndConstellationStatus()) : m_manager->getSatelliteNextPass();
            QVERIFY(m_manager->board() && !m_manager->tx()->computingSatelliteNextPass());
        }
        QCOMPARE(m_session->peer.requests().filter(QRegularExpression(u"AOP|SAT|NEXTPASS"_s)), QStringList());
        QCOMPARE(m_server.requests.size(), 3);
    }

    void nextPassIsAskedForWithoutBulletinsToo()
    {
        m_server.serve("500 Error", "");
        QList<bool> computing;
        QObject listener; // ends with what it keeps
        connect(m_manager->tx(), &TxManager::computingSatelliteNextPassChanged, &listener, [&] {
            computing << m_manager->tx()->computingSatelliteNextPass(); // see above; clazy:exclude=lambda-in-connect
        });
        answerAll({u"NEXTPASS"_s}, u"+ERROR=5"_s);
        for (const int option : {0, 1, 2}) {
            expectCritical("Error: QNetworkReply::InternalServerError");
            m_manager->getSatelliteNextPass({option == 0, option == 1, option == 2});
            QCOMPARE(lastRequest(), option == 2 ? u"AT+NEXTPASS=?"_s : u"AT+NEXTPASS=3,3"_s);
            QCOMPARE(lastLine(), u"[APP] Unable to get satellite next pass"_s);
        }
        QCOMPARE(m_session->log.count(u"[APP] Unable to fetch AOP data"_s), 3);
        QCOMPARE(computing, (QList<bool>{true, false, true, false, true, false}));
        QCOMPARE(profile()->nextPassModel()->rowCount(), 1); // as it was
    }

    void nextPassReplacesTheRow()
    {
        addSatellite(u'A');
        const PrepassModel *model = profile()->nextPassModel();
        for (const auto &[start, end, row] : {
                 std::tuple{"2020-1-7T9:5:0Z", "59,0", "Tue Jan 7, 09:05:00|00:00:59|0.00|true"},
                 {"2090-1-7T9:5:0Z", "600.5,-3", "Sat Jan 7, 09:05:00|00:00:00|-3.00|false"},
                 {"2090-2-30T9:5:0Z", "4294967295,5", "|06:28:15|5.00|false"},
                 {"-2090-1-7T9:5:0Z", "-5,5", "Sat Jan 7, 09:05:00|00:00:00|5.00|true"},
             }) {
            say("+NEXTPASS=a1,"_L1 + QLatin1String(start) + ",2090-1-7T9:15:0Z,"_L1 + QLatin1String(end));
            QStringList seen;
            for (int role = PrepassModel::SatelliteNameRole; role <= PrepassModel::IsActiveRole; ++role) {
                seen << model->data(model->index(0), role).toString();
            }
            QCOMPARE(model->rowCount(), 1);
            QCOMPARE(seen.join(u'|'), "Sat A|"_L1 + QLatin1String(row));
            QCOMPARE(lastLine(), QString("[APP] Next satellite pass: "_L1 + seen.at(1)).trimmed());
        }
    }

    void configurationOfTheDeviceIsConfined()
    {
        for (const auto &[fields, read] : {
                 std::pair{"2026-1-9T0:0:0Z,5.5,89.5,7.9,12,1.5,30", "2 5.5 7 89.5 12 1.5 30"},
                 {"2025-1-9T0:0:0Z,-1,-2,-3,-4,-5,-6", "0 -1 0 -2 0 -5 0"},
                 {"2027-1-9T0:0:0Z,1,1,1000,70000,1,300", "255 1 255 1 65535 1 255"},
                 {"2026-1-7T25:0:0Z,.,-,1.2.3,--,..,-", "0 0 0 0 0 0 0"},
             }) {
            say("+PREPASS_CFG=1,2,2026-1-7T23:59:0Z,"_L1 + QLatin1String(fields));
            const auto [days, lowest, shortest, highest, most, margin, step] = profile()->config();
            QCOMPARE(
                u"%1 %2 %3 %4 %5 %6 %7"_s.arg(days).arg(lowest).arg(shortest).arg(highest).arg(most).arg(margin).arg(
                    step),
                QLatin1String(read));
        }
        QCOMPARE(profile()->position().latitude, 0.0);
    }

    void bulletinsOfTheDeviceAreReadAsFarAsTheyGo()
    {
        qputenv("TZ", "Europe/Paris"); // where this hour of the night is left out
        const auto restore = qScopeGuard([] { qunsetenv("TZ"); });
        say(u"+AOP=end"_s);
        QCOMPARE(satellites()->rowCount(), 0);
        QVERIFY(lastLine().startsWith("[APP] satellite id, bulletin date (UTC), semi-major axis (km)"_L1));
        say(u"+AOP=f0,2026-3-29T2:30:0Z,7195.654,98.7,344.1,-25.3,101.3,-1.9,blacklisted"_s);
        say(u"+AOP=A,-2026-1-7T9:5:0Z,.,-,1-1,1.1.1,--,5"_s);
        QCOMPARE(satellites()->satelliteAt(0)->aopAtParameters().join(u','),
                 u"F,2026-03-29T02:30:00Z,7195.65,98.7,344.1,-25.3,101.3,-1.9"_s);
        QCOMPARE(satellites()->satelliteAt(1)->aopAtParameters().join(u','), u"A,,0,0,0,0,0,5"_s);
        QVERIFY(satellites()->satelliteAt(0)->satelliteName == "NA"_L1 && satellites()->isModuleSatellite(u'f'));
        changeTo(ZepBoard::ZEP1); // it has no bulletins, and reads no fields of one
        say(u"+AOP=B,2026-3-29T2:30:0Z,1,2,3,4,5,6"_s);
        QCOMPARE(satellites()->rowCount(), 2);
    }

    void constellationStatusIsToldInOneLine()
    {
        addSatellite(u'A');
        m_session->log.clear();
        for (const QString &line : {u"a,3,1,blacklisted"_s, u"B,4294967295,-1"_s, u"end"_s}) {
            say("+SAT="_L1 + line);
        }
        QCOMPARE(m_session->log.filter(u"[APP]"_s),
                 (QStringList{u"[APP] Satellite Sat A (A) - DNLK_HELIO_3_ON - UPLK_HELIO_NEO_MIREL_ON"_s,
                              u"[APP] Satellite NA (B) -  - UPLK_HELIO_3_ON"_s}));
        QCOMPARE(satellites()->satelliteAt(0)->statusAtParameters().join(u','), u"A,3,2"_s);
    }

    void clockAdoptsTheModulesDate()
    {
        for (const QString &date : {u"2031-3-5T3:4:5Z"_s, u"2031-2-30T3:4:5Z"_s}) {
            m_session->peer.answer(u"AT+UDATE=?"_s, {"+UDATE="_L1 + date});
            m_session->log.clear();
            m_manager->getModuleUtcDate();
            const bool isDate = date.contains("-3-"_L1);
            QCOMPARE(m_session->log.value(2), isDate ? u"[APP] UTC time: Wed Mar 5, 03:04:05"_s : u"[APP] UTC time:"_s);
            QCOMPARE(m_manager->tx()->utcDateTime().date().year() == 2031, isDate);
        }
    }
};

QTEST_GUILESS_MAIN(TestZepPrediction)
#include "tst_zepprediction.moc"
