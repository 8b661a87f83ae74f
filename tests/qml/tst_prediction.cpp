// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "HttpServer.h"
#include "PrepassProfile.h"
#include "Program.h"
#include "SatelliteAopModel.h"

using namespace Qt::StringLiterals;

constexpr auto c_unreachable = "ERROR: Unable to fetch last AOP data from server. Check your internet access.";

class tst_Prediction : public QObject
{
    Q_OBJECT

    /// A document of \a count satellites named "S0", "S1" and on.
    static QByteArray bulletins(int count)
    {
        QByteArrayList satellites;
        for (int i = 0; i < count; ++i) {
            satellites
                << R"({"satellite":"S%1","broadcastedStatus":{"fleetfeedIdent":"%2"},"aop":{"inclination":98.5}})"_ba
                       .replace("%1", QByteArray::number(i))
                       .replace("%2", QByteArray(1, static_cast<char>('A' + i)));
        }
        return R"({"satellitesInformation":[)" + satellites.join(',') + "]}";
    }

private Q_SLOTS:
    void customTimeGoesWhereTheBoardWantsIt_data();
    void customTimeGoesWhereTheBoardWantsIt();
    void fieldsTakeWhatTheyMayAndShowWhatTheModuleSays_data();
    void fieldsTakeWhatTheyMayAndShowWhatTheModuleSays();
    void rangerTakesEachNumberAtOnce();
    void uploadRestsDuringASequence();
    void downloadTellsHowItEnded();
    void tilesRunThroughThePalette();
    void importEndsTheSpinnerHoweverItEnds_data();
    void importEndsTheSpinnerHoweverItEnds();
};

void tst_Prediction::customTimeGoesWhereTheBoardWantsIt_data()
{
    QTest::addColumn<ZepBoard::Module>("board");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("pickers");
    QTest::addColumn<bool>("toModule");
    QTest::addColumn<bool>("restored");
    QTest::addColumn<bool>("taken");
    QTest::newRow("zep1") << ZepBoard::ZEP1 << "+OK" << true << false << false << true;
    QTest::newRow("zep2") << ZepBoard::ZEP2 << "+OK" << true << true << false << true;
    QTest::newRow("zep2 refuses") << ZepBoard::ZEP2 << "+ERROR=1" << true << true << false << false;
    QTest::newRow("tbx") << ZepBoard::TBX << "+OK" << false << false << false << false; // it takes the present minute
    QTest::newRow("ranger") << ZepBoard::RANGER << "+OK" << false << false << true << false;
}

void tst_Prediction::customTimeGoesWhereTheBoardWantsIt()
{
    QFETCH(const QString, answer);
    QFETCH(const bool, pickers);
    QFETCH(const bool, toModule);
    QFETCH(const bool, restored);
    QFETCH(const bool, taken);
    QFETCH(const ZepBoard::Module, board);
    Program program;
    program.connectTo(board);
    program.tx()->setSelectedProfile(board == ZepBoard::RANGER ? TxManager::PREPASS_ON_MODULE : TxManager::PREPASS);
    const QDateTime shifted = QDateTime::currentDateTimeUtc().addDays(-40);
    program.tx()->setCustomUtcTime(shifted.toString(Qt::ISODate));

    program.click("Choose a custom UTC date and time");
    QTRY_VERIFY(program.find("Setting the UTC time"));
    program.click("Cancel");
    QTRY_VERIFY(!program.find("Setting the UTC time") && !program.find("Cancel"));
    program.click("Choose a custom UTC date and time");
    QTRY_VERIFY(program.find("restore UTC time"));
    QCOMPARE(program.checked("restore UTC time"), restored);
    QCOMPARE(program.enabled("restore UTC time"), !restored);
    QCOMPARE(program.find("Day") != nullptr, pickers);
    QString date;
    if (pickers) {
        const auto pick = [&program](const char *name, int index) {
            program.find(name, "currentIndex")->setProperty("currentIndex", index);
        };
        const auto picked = [&program](const char *name) {
            return program.find(name, "currentIndex")->property("currentIndex").toInt();
        };
        QCOMPARE(picked("Year"), 1);
        QCOMPARE(picked("Day") + 1, QDateTime::currentDateTimeUtc().date().day());
        const int firstYear = QDateTime::currentDateTimeUtc().date().year() - 1;
        const int leap = (4 - firstYear % 4) % 4;
        pick("Year", leap);
        pick("Month", 1);
        pick("Day", 28);
        QCOMPARE(picked("Day"), 28);
        pick("Year", (leap + 1) % 4);
        QCOMPARE(picked("Day"), 27);
        pick("Hours", 3);
        pick("Minutes", 4);
        date = QString::number(firstYear + (leap + 1) % 4) + "-02-28T03:04:00Z";
    }
    program.answers["AT+UDATE=" + date] = {answer};
    program.click("OK");
    QTRY_VERIFY(!program.find("Setting the UTC time"));
    QCOMPARE(program.peer.requests(), toModule ? QStringList{"AT+UDATE=" + date} : QStringList());
    const QDateTime expected = taken      ? QDateTime::fromString(date, Qt::ISODate)
                               : toModule ? shifted
                                          : QDateTime::currentDateTimeUtc();
    QVERIFY(qAbs(program.tx()->utcDateTime().secsTo(expected)) <= 60);
    QVERIFY(program.find(program.tx()->utcTime()));
}

void tst_Prediction::fieldsTakeWhatTheyMayAndShowWhatTheModuleSays_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("sent"); // none: the typed number is not accepted
    const auto row = [](const char *name, const char *field, const char *typed, const char *sent) {
        QTest::newRow(name) << field << typed << sent;
    };
    row("latitude", "Latitude", "-45.123456", "AT+POS=-45.1235,20");
    row("longitude at the limit", "Longitude", "90", "AT+POS=10,90");
    row("longitude beyond a latitude's limit", "Longitude", "90.5", "");
    row("comma", "Longitude", "4,5", "");
    row("duration beyond the portal's", "Duration", "183", "");
    row("elevation", "Min. elevation", "90.01", "");
    row("pass duration", "Min. pass duration", "61", "");
}

void tst_Prediction::fieldsTakeWhatTheyMayAndShowWhatTheModuleSays()
{
    QFETCH(const QString, field);
    QFETCH(const QString, sent);
    QFETCH(const QString, typed);
    const QString heading = field.endsWith("tude") ? "GNSS position" : "Pass prediction";
    Program program;
    program.answers = {{"AT+POS=?", {"+POS=10,20"}},
                       {"AT+PREPASS_CFG=?", {"+PREPASS_CFG=0,0,2030-1-1T0:0:0Z,2030-1-8T0:0:0Z,7.5,90,5,1000,5,30"}},
                       {sent, {"+ERROR=1"}}};
    program.connectTo(ZepBoard::ZEP2);
    program.tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE);
    program.click("GNSS position: Get parameter(s) from module");
    program.click("Pass prediction: Get parameter(s) from module");
    const QString told = program.text(field);
    program.peer.forgetRequests();
    program.enter(field, typed);
    QCOMPARE(program.text(field), typed);
    QCOMPARE(program.enabled(heading + ": Set parameter(s) in module"), !sent.isEmpty());
    program.click(heading + (sent.isEmpty() ? ": Get parameter(s) from module" : ": Set parameter(s) in module"));
    QCOMPARE(program.text(field), told); // the module said what was known before, or refused
    if (!sent.isEmpty()) {
        QCOMPARE(program.peer.requests(), QStringList{sent});
    }
}

void tst_Prediction::rangerTakesEachNumberAtOnce()
{
    Program program;
    program.answers["AT+PREPASS_CFG=?"] = {"+PREPASS_CFG=0,0,2030-1-1T0:0:0Z,2030-1-8T0:0:0Z,7,90,5,1000,5,30"};
    program.connectTo(ZepBoard::RANGER);
    QVERIFY2(!program.enabled("Satellite infos"), "a periodic Ranger predicts nothing");
    program.tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE);
    QVERIFY(!program.enabled("Latitude", "acceptableInput") && !program.enabled("Longitude", "acceptableInput"));
    QVERIFY(!program.find("Pass prediction: Set parameter(s) in module") &&
            !program.find("Duration", "acceptableInput"));
    program.enter("Min. elevation", "4.25");
    QCOMPARE(program.text("Min. elevation"), "4.25");
    QCOMPARE(program.tx()->prepassProfile()->config().minElevation, 4.25);
    program.enter("Min. elevation", "4.");
    QCOMPARE(program.text("Min. elevation"), "4.");
    for (int time = 0; time < 2; ++time) { // the second time nothing changes
        program.enter("Min. elevation", "95");
        program.click("Pass prediction: Get parameter(s) from module");
        QCOMPARE(program.text("Min. elevation"), "7");
    }
    QCOMPARE(program.peer.requests().count("AT+PREPASS_CFG=?"), 2);
    QCOMPARE(program.peer.requests().size(), 2);
}

void tst_Prediction::uploadRestsDuringASequence()
{
    const QString upload = "AOP data: Set parameter(s) in module";
    HttpServer server;
    server.serve("200 OK", bulletins(1));
    Program program(server.url());
    program.connectTo(ZepBoard::ZEP2);
    program.tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE);
    program.tx()->addPayloadItem("00000000");
    QVERIFY2(!program.enabled(upload), "nothing to upload");
    program.click("Download AOP data from HelioWeb");
    QTRY_VERIFY(program.enabled(upload));
    const QString tomorrow = QDateTime::currentDateTimeUtc().addDays(1).toString(u"yyyy-M-dTH:m:sZ");
    program.answers["AT+NEXTPASS=?"] = {"+NEXTPASS=A," + tomorrow + u',' + tomorrow + ",600,45"};
    program.tx()->start(1);
    QVERIFY(program.tx()->sequenceRunning());
    QVERIFY(!program.enabled(upload));
    program.click("Download AOP data from HelioWeb");
    QTRY_COMPARE(server.requests.size(), 2);
    QTRY_VERIFY(program.find("Download AOP data from HelioWeb"));
    QVERIFY2(!program.enabled(upload), "a download wakes it");
    program.tx()->stop();
    QTRY_VERIFY(program.enabled(upload));
}

void tst_Prediction::downloadTellsHowItEnded()
{
    HttpServer server;
    server.serve("500 Internal Server Error", "x");
    Program program(server.url());
    program.connectTo(ZepBoard::ZEP1);
    program.click("Satellite infos");
    QVERIFY(program.find("No satellite info available"));
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("Error: .*"));
    program.click("Download AOP data from HelioWeb");
    QTRY_VERIFY(program.find(c_unreachable));
    QVERIFY(!program.find("Check satellite pane for more info."));
    server.serve("200 OK", bulletins(1));
    program.click("Download AOP data from HelioWeb");
    QTRY_VERIFY(program.find("AOP data downloaded successfully!"));
    QTRY_VERIFY(program.find("Check satellite pane for more info."));
    QVERIFY(!program.find("No satellite info available"));
}

void tst_Prediction::tilesRunThroughThePalette()
{
    Program program;
    program.connectTo(ZepBoard::ZEP1);
    QVERIFY(program.tx()->prepassProfile()->satelliteAopModel()->loadAopJson(bulletins(20)));
    program.click("Satellite infos");
    const auto colour = [&program](int tile) {
        const QQuickItem *item = program.find(QString("S%1").arg(tile), "background");
        return item->property("background").value<QQuickItem *>()->property("color").value<QColor>().rgb();
    };
    QSet<QRgb> colours;
    for (int tile = 0; tile < 19; ++tile) {
        colours << colour(tile);
    }
    QCOMPARE(colours.size(), 19);
    QCOMPARE(colour(19), colour(0));

    program.hover("S1", "background");
    const QString bulletin = program.tx()->prepassProfile()->satelliteAopModel()->satelliteAt(1)->aopTooltipHtml();
    QTRY_VERIFY(program.find(bulletin));
    const QQuickItem *text = program.find(bulletin);
    QCOMPARE(text->parentItem()->childItems().constFirst()->property("color").value<QColor>().rgb(), colour(1));
}

void tst_Prediction::importEndsTheSpinnerHoweverItEnds_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("there");
    QTest::addColumn<QString>("message");
    QTest::newRow("given up") << "Cancel" << true << "";
    QTest::newRow("good") << "Open" << true << "";
    QTest::newRow("gone when it is opened") << "Open" << false << "Error: Unable to open file: ";
}

void tst_Prediction::importEndsTheSpinnerHoweverItEnds()
{
    QFETCH(const QString, button);
    QFETCH(const bool, there);
    QFETCH(QString, message);
    Program program;
    program.connectTo(ZepBoard::ZEP1);
    const QString hint = "Please import a CSV file exported from HelioWeb";
    QVERIFY(program.find("No data available.") && program.find(hint) && program.find("(with UTC time zone)."));
    QFile file("passes.csv");
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("Satellite;Start date/time;Middle date/time;End date/time;Duration;Middle elevation;Start azimuth;"
               "Middle azimuth;End azimuth\nAB-1;01-01-2090 10:00:00;;;00:10:00;5;;;\n");
    file.close();
    const QString folder = QUrl::fromLocalFile(program.folder.path()).toString();
    Screen::evaluate(program.find("Satellite pass predictions"), "importDialog.currentFolder = '" + folder + "'");
    program.click("Import data");
    QVERIFY(program.find("Importing data") && !program.find(hint));
    program.click("passes.csv");
    if (!there) {
        file.remove();
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(".*"));
        message += program.folder.filePath("passes.csv");
    }
    program.click(button);
    QTRY_VERIFY(!program.find("Importing data"));
    const bool imported = button == "Open" && there;
    QTRY_COMPARE(program.find("AB-1") != nullptr, imported);
    QCOMPARE(program.find(hint) != nullptr, !imported);
    QTRY_COMPARE(program.find(message) != nullptr, !message.isEmpty());
}

QTEST_MAIN(tst_Prediction)
#include "tst_prediction.moc"
