// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "HttpServer.h"
#include "PeriodicProfile.h"
#include "PrepassModel.h"
#include "PrepassProfile.h"
#include "SatelliteAopModel.h"
#include "ScriptedSession.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class TestZepPrediction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void refusedQuestionIsToldInItsOwnWords_data();
    void refusedQuestionIsToldInItsOwnWords();
    void refusedSettingLeavesWhatWasThere();
    void acceptedSettingIsSentInSixDigitsAndKept();
    void redundancyLandsInTheSelectedProfile();

    void uploadSendsEachSatelliteAUsableBulletin_data();
    void uploadSendsEachSatelliteAUsableBulletin();
    void uploadTellsTheOutcomeOfTheLastCommandOnly();
    void uploadFetchesWhatItLacks_data();
    void uploadFetchesWhatItLacks();
    void sessionThatEndsDuringTheDownloadGetsNothingSent();

    void nextPassAsksForWhatThePayloadWants_data();
    void nextPassAsksForWhatThePayloadWants();
    void nextPassReplacesTheRow_data();
    void nextPassReplacesTheRow();

    void configurationOfTheDeviceIsConfined_data();
    void configurationOfTheDeviceIsConfined();
    void bulletinsOfTheDeviceAreReadAsFarAsTheyGo_data();
    void bulletinsOfTheDeviceAreReadAsFarAsTheyGo();
    void constellationStatusIsToldInOneLine();
    void clockAdoptsTheModulesDate_data();
    void clockAdoptsTheModulesDate();

private:
    PrepassProfile *profile() const { return m_session->manager.tx()->prepassProfile(); }
    SatelliteAopModel *satellites() const { return profile()->satelliteAopModel(); }
    /// A satellite of the web service; one that the module knows, too, with an upper-case \a ident.
    void addSatellite(QChar ident, SatelliteAop::UplinkStatus uplink, double semiMajorAxis);
    /// Has the device say \a line and waits until it was read.
    void say(const QByteArray &line);

    HttpServer m_server;
    std::unique_ptr<ScriptedSession> m_session;
};

void TestZepPrediction::init()
{
    m_server.requests.clear();
    m_session.reset();
    m_session = std::make_unique<ScriptedSession>(m_server.url());
}

void TestZepPrediction::addSatellite(QChar ident, SatelliteAop::UplinkStatus uplink, double semiMajorAxis)
{
    const QDateTime date(QDate(2026, 1, 7), QTime(9, 5), Qt::UTC);
    if (ident.isUpper()) {
        satellites()->updateOrAddSatellite(ident, date, 0, 0, 0, 0, 0, 0, u"NA"_s, SatelliteAop::DNLK_NA,
                                           SatelliteAop::UPLK_NA);
    }
    satellites()->updateOrAddSatellite(ident, date, semiMajorAxis, 98.7, 344.1, -25.3, 101.4, -1.9, u"Sat "_s + ident,
                                       SatelliteAop::DNLK_HELIO_3_ON, uplink);
}

void TestZepPrediction::say(const QByteArray &line)
{
    const qsizetype count = m_session->log.size();
    m_session->peer.say(line);
    QTRY_VERIFY(m_session->log.size() > count);
}

void TestZepPrediction::refusedQuestionIsToldInItsOwnWords_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("failure");
    QTest::newRow("getModuleUtcDate") << u"UDATE"_s << u"Unable to get UTC date from TBX"_s;
    QTest::newRow("getPrepassEnable") << u"PREPASS_EN"_s << u"Unable to get prediction pass 'enable' status"_s;
    QTest::newRow("getPrepassConfig") << u"PREPASS_CFG"_s << u"Unable to get prediction pass config"_s;
    QTest::newRow("getGnssPosition") << u"POS"_s << u"Unable to get GNSS position"_s;
    QTest::newRow("getAopData") << u"AOP"_s << u"Unable to get AOP data"_s;
    QTest::newRow("getTxRedundancy") << u"ZEP_REDUN"_s << u"Unable to get Tx redundancy"_s;
}

void TestZepPrediction::refusedQuestionIsToldInItsOwnWords()
{
    QFETCH(QString, command);
    QFETCH(QString, failure);
    QVERIFY(m_session->connectTo(ZepBoard::TBX));
    m_session->peer.answer("AT+"_L1 + command + "=?"_L1, {u"+ERROR=5"_s});
    QVERIFY(QMetaObject::invokeMethod(&m_session->manager, QTest::currentDataTag()));
    QCOMPARE(m_session->peer.requests().last(), "AT+"_L1 + command + "=?"_L1);
    QCOMPARE(m_session->log.last(), "[APP] "_L1 + failure);
}

void TestZepPrediction::refusedSettingLeavesWhatWasThere()
{
    QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    ZepManager &manager = m_session->manager;
    for (const char *word : {"UDATE", "POS", "PREPASS_CFG", "PREPASS_EN", "ZEP_REDUN"}) {
        m_session->peer.answer("AT+"_L1 + QLatin1String(word) + "=*"_L1, {u"+ERROR=5"_s});
    }
    profile()->setPosition({1, 2});
    QSignalSpy completed(manager.tx(), &TxManager::loadPrepassDataCompleted);
    QSignalSpy position(profile(), &PrepassProfile::positionChanged);

    QVERIFY(!manager.setModuleUtcDate(u"2031-03-05T23:58:30Z"_s));
    QCOMPARE(m_session->log.last(), u"[APP] Unable to set UTC date on ZEP2"_s);
    QCOMPARE(completed.count(), 1);
    QCOMPARE(completed.first().first().toString(), QString());
    QVERIFY(manager.tx()->utcDateTime().date().year() != 2031);

    QVERIFY(!manager.setGnssPosition(43, 1));
    QCOMPARE(position.count(), 1); // the fields fall back
    QCOMPARE(profile()->position().latitude, 1.0);

    QVERIFY(!manager.setPrepassConfig(1, 2, 3));
    QCOMPARE(m_session->log.last(), u"[APP] Unable to set prediction pass config"_s);
    QCOMPARE(profile()->config().minElevation, 5.0);
    QVERIFY(!manager.setPrepassEnable(true));
    QCOMPARE(m_session->log.last(), u"[APP] The value of the parameter is incompatible"_s);
    QVERIFY(!manager.setTxRedundancy(3));
    QCOMPARE(m_session->log.last(), u"[APP] Unable to set Tx redundancy"_s);

    manager.disconnect();
    QVERIFY(!manager.setModuleUtcDate(u"2031-03-05T23:58:30Z"_s));
    QCOMPARE(completed.count(), 3); // the end of the session had one of its own
}

void TestZepPrediction::acceptedSettingIsSentInSixDigitsAndKept()
{
    QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    ZepManager &manager = m_session->manager;
    for (const char *word : {"POS", "PREPASS_CFG", "PREPASS_EN"}) {
        m_session->peer.answer("AT+"_L1 + QLatin1String(word) + "=*"_L1, {u"+OK"_s});
    }
    QVERIFY(manager.setModuleUtcDate(u"2031-12-31T23:58:30Z"_s));
    QCOMPARE(manager.tx()->utcDateTime().date(), QDate(2031, 12, 31));
    QVERIFY(manager.setGnssPosition(43.5612345, -1.4812345));
    QCOMPARE(m_session->peer.requests().last(), u"AT+POS=43.5612,-1.48123"_s);
    QVERIFY(manager.setPrepassEnable(true));
    QCOMPARE(m_session->peer.requests().last(), u"AT+PREPASS_EN=1"_s);

    profile()->setPosition({43.5612345, 0.00001});
    QVERIFY(manager.setPrepassConfig(2, 10.25, 4));
    const QString request = m_session->peer.requests().last();
    const QString start = request.section(u',', 2, 2);
    QVERIFY2(start.startsWith("2031-12-31T23:58:"_L1) && start.endsWith(u'Z'), qPrintable(start));
    QCOMPARE(request, "AT+PREPASS_CFG=43.5612,1e-05,"_L1 + start + ",2032-01-02"_L1 + start.mid(10) +
                          ",10.25,90,4,1000,5,30"_L1);
    QCOMPARE(profile()->config().minPassDuration, uchar(4));
    QVERIFY(manager.setPrepassConfig(0, 1, 2, 3, 4, 5.5, 6));
    QVERIFY(m_session->peer.requests().last().endsWith(",1,3,2,4,5.5,6"_L1));
}

void TestZepPrediction::redundancyLandsInTheSelectedProfile()
{
    QVERIFY(m_session->connectTo(ZepBoard::RANGER));
    TxManager *tx = m_session->manager.tx();
    for (const QByteArray line : {"+PREPASS_EN=2", "+ZEP_REDUN=300", "+PREPASS_EN=0", "+ZEP_REDUN=9"}) {
        m_session->peer.say(line);
    }
    QTRY_COMPARE(tx->periodicProfile()->redundancy(), uchar(9));
    QCOMPARE(profile()->redundancy(), uchar(255)); // confined, not cut to 44
    QCOMPARE(tx->selectedProfile(), TxManager::PERIODIC);
}

void TestZepPrediction::uploadSendsEachSatelliteAUsableBulletin_data()
{
    QTest::addColumn<ZepBoard::Module>("module");
    QTest::addColumn<QList<int>>("uplinks"); // of the satellites A, b and C; the module does not know b
    QTest::addColumn<QString>("sent");       // AOP: ident and semi-major axis; SAT: ident and uplink
    const int on = SatelliteAop::UPLK_HELIO_4_ON;
    const int off = SatelliteAop::UPLK_OUT_OF_SERVICE;
    QTest::newRow("all in service") << ZepBoard::ZEP2 << QList<int>{on, on, on} << u"A100 A2 C300 C2"_s;
    QTest::newRow("orbit of the next one") << ZepBoard::TBX << QList<int>{off, off, on} << u"A300 A3 C300 C2"_s;
    QTest::newRow("orbit of one that the module does not know")
        << ZepBoard::ZEP2 << QList<int>{off, on, on} << u"A200 A3 C300 C2"_s;
    QTest::newRow("none in service") << ZepBoard::ZEP2 << QList<int>{off, off, off} << u"A100 A3 C100 C3"_s;
    QTest::newRow("no statuses for a Ranger") << ZepBoard::RANGER << QList<int>{on, on, off} << u"A100 C100"_s;
}

void TestZepPrediction::uploadSendsEachSatelliteAUsableBulletin()
{
    QFETCH(ZepBoard::Module, module);
    QFETCH(QList<int>, uplinks);
    QFETCH(QString, sent);
    QVERIFY(m_session->connectTo(module));
    m_session->peer.answer(u"AT+AOP=*"_s, {u"+OK"_s});
    m_session->peer.answer(u"AT+SAT=*"_s, {u"+OK"_s});
    m_session->peer.forgetRequests();
    m_session->log.clear();
    for (int i = 0; i < 3; ++i) {
        addSatellite("AbC"_L1.at(i), static_cast<SatelliteAop::UplinkStatus>(uplinks.at(i)), 100 * (i + 1));
    }
    if (uplinks.count(SatelliteAop::UPLK_OUT_OF_SERVICE) == 3) {
        QTest::ignoreMessage(QtCriticalMsg, "All satellites are OUT OF SERVICE!");
    }
    QVERIFY(m_session->manager.setAopDataAndConstellationStatus());

    QStringList seen;
    for (const QString &request : m_session->peer.requests()) {
        const QStringList fields = request.section(u'=', 1).split(u',');
        const bool isBulletin = request.startsWith("AT+AOP"_L1);
        QCOMPARE(fields.size(), isBulletin ? 8 : 3);
        QCOMPARE(fields.at(1), isBulletin ? u"2026-01-07T09:05:00Z"_s : u"3"_s);
        seen << fields.first() + fields.at(2);
    }
    QCOMPARE(seen.join(u' '), sent);
    QVERIFY(m_session->log.contains(u"[APP] Satellite 'b' not supported, pass"_s));
    QCOMPARE(
        m_session->log.contains(u"[APP] AOP data have expired for this satellite, copying data from Sat C (C)..."_s),
        sent.contains("A300"_L1));
}

void TestZepPrediction::uploadTellsTheOutcomeOfTheLastCommandOnly()
{
    QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    addSatellite(u'b', SatelliteAop::UPLK_HELIO_4_ON, 1);
    QVERIFY(!m_session->manager.setAopDataAndConstellationStatus()); // nothing that the module knows

    addSatellite(u'A', SatelliteAop::UPLK_HELIO_4_ON, 1);
    m_session->peer.answer(u"AT+AOP=*"_s, {u"+ERROR=5"_s});
    m_session->peer.answer(u"AT+SAT=*"_s, {u"+OK"_s});
    QVERIFY(m_session->manager.setAopDataAndConstellationStatus());
    QVERIFY(m_session->log.contains(u"[APP] Unable to set AOP data"_s));
    m_session->peer.answer(u"AT+SAT=*"_s, {u"+ERROR=5"_s});
    QVERIFY(!m_session->manager.setAopDataAndConstellationStatus());
    QCOMPARE(m_session->log.last(), u"[APP] Unable to set constellation status"_s);
}

void TestZepPrediction::uploadFetchesWhatItLacks_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<QString>("lastLine");
    QTest::newRow("a satellite") << QByteArray(
                                        R"({"satellitesInformation":[{"broadcastedStatus":{"fleetfeedIdent":"A"}}]})")
                                 << QStringList() << u"[APP] Satellite 'A' not supported, pass"_s;
    QTest::newRow("none") << QByteArray("{}") << QStringList{u"All satellites are OUT OF SERVICE!"_s} << QString();
    QTest::newRow("no document") << QByteArray("[]") << QStringList{u"AOP data error (no consistent object)"_s}
                                 << u"[APP] Unable to fetch AOP data"_s;
}

void TestZepPrediction::uploadFetchesWhatItLacks()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, messages);
    QFETCH(QString, lastLine);
    QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    m_session->peer.forgetRequests();
    m_session->log.clear();
    m_server.serve("200 OK", body);
    for (const QString &message : messages) {
        QTest::ignoreMessage(QtCriticalMsg, message.toLatin1().constData());
    }
    QVERIFY(!m_session->manager.setAopDataAndConstellationStatus());
    QCOMPARE(m_server.requests.size(), 1);
    QCOMPARE(m_session->peer.requests(), QStringList());
    QCOMPARE(m_session->log.value(m_session->log.size() - 1), lastLine);
}

void TestZepPrediction::sessionThatEndsDuringTheDownloadGetsNothingSent()
{
    QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    ZepManager &manager = m_session->manager;
    m_server.serve("200 OK", R"({"satellitesInformation":[{"broadcastedStatus":{"fleetfeedIdent":"A"}}]})");
    m_session->peer.forgetRequests();
    for (const bool upload : {true, false}) {
        // Another session has begun by the time that the bulletins are there.
        QTimer::singleShot(0, &manager, [this] {
            m_session->manager.disconnect();
            QVERIFY(m_session->connectTo(ZepBoard::TBX));
            satellites()->clear();
            satellites()->updateOrAddSatellite(u'A', {}, 0, 0, 0, 0, 0, 0, u"NA"_s, SatelliteAop::DNLK_NA,
                                               SatelliteAop::UPLK_NA);
        });
        satellites()->clear();
        if (upload) {
            QVERIFY(!manager.setAopDataAndConstellationStatus());
        } else {
            manager.getSatelliteNextPass();
            QCOMPARE(m_session->log.last(), u"[APP] Unable to get satellite next pass"_s);
            QVERIFY(!manager.tx()->computingSatelliteNextPass());
        }
        QVERIFY(manager.board());
        QCOMPARE(m_session->peer.requests().filter(QRegularExpression(u"AOP|SAT|NEXTPASS"_s)), QStringList());
    }
}

void TestZepPrediction::nextPassAsksForWhatThePayloadWants_data()
{
    QTest::addColumn<bool>("ack");
    QTest::addColumn<bool>("mail");
    QTest::addColumn<bool>("bulletins");
    QTest::addColumn<QString>("request");
    QTest::newRow("nothing back") << false << false << true << u"AT+NEXTPASS=?"_s;
    QTest::newRow("acknowledgement") << true << false << true << u"AT+NEXTPASS=3,3"_s;
    QTest::newRow("downlink, and no bulletins to be had") << false << true << false << u"AT+NEXTPASS=3,3"_s;
}

void TestZepPrediction::nextPassAsksForWhatThePayloadWants()
{
    QFETCH(bool, ack);
    QFETCH(bool, mail);
    QFETCH(bool, bulletins);
    QFETCH(QString, request);
    QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    TxManager *tx = m_session->manager.tx();
    m_server.serve("500 Error", {});
    if (bulletins) {
        addSatellite(u'A', SatelliteAop::UPLK_HELIO_4_ON, 1);
    } else {
        QTest::ignoreMessage(QtCriticalMsg, "Error: QNetworkReply::InternalServerError");
    }
    QList<bool> computing;
    connect(tx, &TxManager::computingSatelliteNextPassChanged, this,
            [&] { computing << tx->computingSatelliteNextPass(); });
    m_session->peer.answer(request, {u"+ERROR=5"_s});
    m_session->manager.getSatelliteNextPass({ack, mail, true});
    QCOMPARE(m_session->peer.requests().last(), request);
    QCOMPARE(m_session->log.contains(u"[APP] Unable to fetch AOP data"_s), !bulletins);
    QCOMPARE(m_session->log.last(), u"[APP] Unable to get satellite next pass"_s);
    QCOMPARE(computing, (QList<bool>{true, false}));
    QCOMPARE(profile()->nextPassModel()->rowCount(), 1); // the row is as it was
}

void TestZepPrediction::nextPassReplacesTheRow_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("row"); // name, start, duration, elevation, in progress
    QTest::newRow("to come") << u"a,2090-1-7T9:5:0Z,2090-1-7T9:15:0Z,600,45"_s
                             << u"Sat A|Sat Jan 7, 09:05:00|00:10:00|45.00|false"_s;
    QTest::newRow("past") << u"b,2020-1-7T9:5:0Z,2020-1-7T9:15:0Z,59,0"_s
                          << u"NA|Tue Jan 7, 09:05:00|00:00:59|0.00|true"_s;
    QTest::newRow("a duration with a point, a negative elevation")
        << u"A1,2090-1-7T9:5:0Z,2090-1-7T9:15:0Z,600.5,-3"_s << u"Sat A|Sat Jan 7, 09:05:00|00:00:00|-3.00|false"_s;
    QTest::newRow("more than a day") << u"A,2090-1-7T9:5:0Z,2090-1-7T9:15:0Z,4294967295,5"_s
                                     << u"Sat A|Sat Jan 7, 09:05:00|06:28:15|5.00|false"_s;
    QTest::newRow("no such date") << u"A,2090-2-30T9:5:0Z,2090-1-7T9:15:0Z,-5,5"_s << u"Sat A||00:00:00|5.00|false"_s;
    QTest::newRow("negative year") << u"A,-2090-1-7T9:5:0Z,2090-1-7T9:15:0Z,1,5"_s
                                   << u"Sat A|Sat Jan 7, 09:05:00|00:00:01|5.00|true"_s;
}

void TestZepPrediction::nextPassReplacesTheRow()
{
    QFETCH(QString, line);
    QFETCH(QString, row);
    QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    addSatellite(u'A', SatelliteAop::UPLK_HELIO_4_ON, 1);
    say("+NEXTPASS=" + line.toLatin1());
    PrepassModel *model = profile()->nextPassModel();
    QCOMPARE(model->rowCount(), 1);
    QStringList seen;
    for (int role = PrepassModel::SatelliteNameRole; role <= PrepassModel::IsActiveRole; ++role) {
        seen << model->data(model->index(0), role).toString();
    }
    QCOMPARE(seen.join(u'|'), row);
    QCOMPARE(m_session->log.last(), QString("[APP] Next satellite pass: "_L1 + seen.at(1)).trimmed());
}

void TestZepPrediction::configurationOfTheDeviceIsConfined_data()
{
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QList<double>>("config");
    const QString day = u"1,2,2026-1-7T23:59:0Z,"_s;
    QTest::newRow("fractions") << day + u"2026-1-9T0:0:0Z,5.5,89.5,7.9,12,1.5,30"_s
                               << QList<double>{2, 5.5, 7, 89.5, 12, 1.5, 30};
    QTest::newRow("end before start, nothing positive")
        << day + u"2025-1-9T0:0:0Z,-1,-2,-3,-4,-5,-6"_s << QList<double>{0, -1, 0, -2, 0, -5, 0};
    QTest::newRow("too much") << day + u"2027-1-9T0:0:0Z,1,1,1000,70000,1,300"_s
                              << QList<double>{255, 1, 255, 1, 65535, 1, 255};
    QTest::newRow("no numbers, no dates")
        << u"1,2,2026-13-7T0:0:0Z,2026-1-7T25:0:0Z,.,-,1.2.3,--,..,-"_s << QList<double>{0, 0, 0, 0, 0, 0, 0};
}

void TestZepPrediction::configurationOfTheDeviceIsConfined()
{
    QFETCH(QString, fields);
    QFETCH(QList<double>, config);
    QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    profile()->setPosition({43, 1});
    QSignalSpy changed(profile(), &PrepassProfile::configChanged);
    say("+PREPASS_CFG=" + fields.toLatin1());
    QCOMPARE(changed.count(), 1);
    const PrepassConfig read = profile()->config();
    QCOMPARE((QList<double>{double(read.predictionDuration), read.minElevation, double(read.minPassDuration),
                            read.maxElevation, double(read.maxPasses), read.timeMargin, double(read.computationStep)}),
             config);
    QCOMPARE(profile()->position().latitude, 43.0);
    QVERIFY(m_session->log.last().endsWith("linear time margin (nb of mn after 6 months),computation step"_L1));
}

void TestZepPrediction::bulletinsOfTheDeviceAreReadAsFarAsTheyGo_data()
{
    QTest::addColumn<ZepBoard::Module>("module");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("bulletin");
    QTest::newRow("unknown id") << ZepBoard::ZEP2
                                << u"f0,2026-1-7T9:5:0Z,7195.654,98.7,344.1,-25.3,101.3,-1.9,blacklisted"_s
                                << u"F,2026-01-07T09:05:00Z,7195.65,98.7,344.1,-25.3,101.3,-1.9"_s;
    QTest::newRow("negative year, no numbers")
        << ZepBoard::TBX << u"A,-2026-1-7T9:5:0Z,.,-,1-1,1.1.1,--,5"_s << u"A,,0,0,0,0,0,5"_s;
    // An hour that a computer in central Europe leaves out.
    QTest::newRow("hour that is missing at home")
        << ZepBoard::ZEP2 << u"A,2026-3-29T2:30:0Z,1,2,3,4,5,6"_s << u"A,2026-03-29T02:30:00Z,1,2,3,4,5,6"_s;
    QTest::newRow("end alone") << ZepBoard::ZEP2 << u"end"_s << QString();
    QTest::newRow("a board without bulletins") << ZepBoard::ZEP1 << u"A,2026-1-7T9:5:0Z,1,2,3,4,5,6"_s << QString();
}

void TestZepPrediction::bulletinsOfTheDeviceAreReadAsFarAsTheyGo()
{
    QFETCH(ZepBoard::Module, module);
    QFETCH(QString, line);
    QFETCH(QString, bulletin);
    qputenv("TZ", "Europe/Paris");
    const auto restore = qScopeGuard([] { qunsetenv("TZ"); });
    QVERIFY(m_session->connectTo(module));
    say("+AOP=" + line.toLatin1());
    QCOMPARE(satellites()->rowCount(), bulletin.isEmpty() ? 0 : 1);
    if (!bulletin.isEmpty()) {
        QCOMPARE(satellites()->satelliteAt(0)->aopAtParameters().join(u','), bulletin);
        QCOMPARE(satellites()->satelliteAt(0)->satelliteName, u"NA"_s);
        QVERIFY(satellites()->isModuleSatellite(bulletin.front()));
    }
    QCOMPARE(m_session->log.contains(u"[APP] AOP parameters (respective order):"_s), line == "end"_L1);
}

void TestZepPrediction::constellationStatusIsToldInOneLine()
{
    QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    addSatellite(u'A', SatelliteAop::UPLK_HELIO_4_ON, 1);
    m_session->log.clear();
    for (const QByteArray line :
         {"+SAT=a,3,1,blacklisted", "+SAT=B,7,-1", "+SAT=C,4294967295,99999999999", "+SAT=end"}) {
        say(line);
    }
    QCOMPARE(m_session->log.filter(u"[APP]"_s),
             (QStringList{u"[APP] Satellite Sat A (A) - DNLK_HELIO_3_ON - UPLK_HELIO_NEO_MIREL_ON"_s,
                          u"[APP] Satellite NA (B) -  - UPLK_HELIO_3_ON"_s,
                          u"[APP] Satellite NA (C) -  - UPLK_HELIO_3_ON"_s}));
    QCOMPARE(satellites()->satelliteAt(0)->statusAtParameters().join(u','), u"A,3,2"_s);
    QCOMPARE(satellites()->rowCount(), 1);
}

void TestZepPrediction::clockAdoptsTheModulesDate_data()
{
    QTest::addColumn<QByteArray>("date");
    QTest::addColumn<int>("year");
    QTest::newRow("a date") << QByteArray("2031-3-5T3:4:5Z") << 2031;
    QTest::newRow("no date") << QByteArray("2031-2-30T3:4:5Z") << QDateTime::currentDateTimeUtc().date().year();
}

void TestZepPrediction::clockAdoptsTheModulesDate()
{
    QFETCH(QByteArray, date);
    QFETCH(int, year);
    QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
    m_session->peer.answer(u"AT+UDATE=?"_s, {u"+UDATE="_s + QString::fromLatin1(date)});
    m_session->manager.tx()->applyUtcOffset(86400 * 3000, false);
    m_session->log.clear();
    m_session->manager.getModuleUtcDate();
    QCOMPARE(m_session->log.value(2), year == 2031 ? u"[APP] UTC time: Wed Mar 5, 03:04:05"_s : u"[APP] UTC time:"_s);
    QCOMPARE(m_session->manager.tx()->utcDateTime().date().year(), year);
}

QTEST_GUILESS_MAIN(TestZepPrediction)
#include "tst_zepprediction.moc"
