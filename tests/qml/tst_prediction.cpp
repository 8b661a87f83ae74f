// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "HttpServer.h"
#include "PrepassProfile.h"
#include "Program.h"
#include "SatelliteAopModel.h"

const QString download = QStringLiteral("Download AOP data from HelioWeb");

class tst_Prediction : public QObject
{
    Q_OBJECT

    /// A document of \a count satellites named "S0", "S1" and on.
    static QByteArray bulletins(int count)
    {
        QByteArrayList satellites;
        for (int i = 0; i < count; ++i) {
            satellites << "{\"satellite\":\"S" + QByteArray::number(i) +
                              "\",\"broadcastedStatus\":{\"fleetfeedIdent\":\"" + static_cast<char>('A' + i) + "\"}}";
        }
        return "{\"satellitesInformation\":[" + satellites.join(',') + "]}";
    }

private Q_SLOTS:
    // A ZEP2 refuses it, a TBX has no pickers, a Ranger can only go back to the real time.
    void customTimeGoesWhereTheBoardWantsIt_data()
    {
        QTest::addColumn<ZepBoard::Module>("board");
        for (const auto board : {ZepBoard::ZEP1, ZepBoard::ZEP2, ZepBoard::TBX, ZepBoard::RANGER}) {
            QTest::addRow("%d", int(board)) << board;
        }
    }

    void customTimeGoesWhereTheBoardWantsIt()
    {
        QFETCH(const ZepBoard::Module, board);
        const bool isRanger = board == ZepBoard::RANGER;
        const bool isZep2 = board == ZepBoard::ZEP2;
        Program program;
        program.connectTo(board);
        program.tx()->setSelectedProfile(isRanger ? TxManager::PREPASS_ON_MODULE : TxManager::PREPASS);
        const QDateTime now = QDateTime::currentDateTimeUtc();
        program.tx()->setCustomUtcTime(now.addDays(-40).toString(Qt::ISODate));
        program.click("Choose a custom UTC date and time");
        QTRY_VERIFY(program.find("Cancel"));
        QTRY_VERIFY2(program.find("Setting the UTC time")->x() > program.field("UTC time")->width(),
                     "one over another");
        program.click("Cancel");
        QTRY_VERIFY(!program.find("Setting the UTC time") && !program.find("Cancel"));

        program.click("Choose a custom UTC date and time");
        QTRY_VERIFY(program.find("OK"));
        QCOMPARE(program.checked("restore UTC time"), isRanger);
        QCOMPARE(program.enabled("restore UTC time"), !isRanger);
        QCOMPARE(program.find("Day", "currentIndex") != nullptr, isZep2 || board == ZepBoard::ZEP1);
        QDateTime expected = now;
        const auto picker = [&](const char *name) { return program.find(name, "currentIndex"); };
        const auto pick = [&](const char *name, int entry) { picker(name)->setProperty("currentIndex", entry); };
        if (picker("Day")) {
            const int firstYear = now.date().year() - 1; // a leap year is among the four
            const int leapEntry = (4 - firstYear % 4) % 4;
            pick("Year", leapEntry);
            pick("Month", 1);
            pick("Day", 28);
            QCOMPARE(picker("Day")->property("currentIndex").toInt(), 28);
            pick("Year", (leapEntry + 1) % 4);
            pick("Hours", 3);
            pick("Minutes", 4);
            expected = QDateTime(QDate(firstYear + (leapEntry + 1) % 4, 2, 28), QTime(3, 4), Qt::UTC);
        }
        const QString request = "AT+UDATE=" + expected.toString(Qt::ISODate);
        program.answers[request] = {"+ERROR=1"};
        program.click("OK");
        QTRY_VERIFY(!program.find("Setting the UTC time"));
        QCOMPARE(program.peer.requests(), isZep2 ? QStringList{request} : QStringList());
        const qint64 off = program.tx()->utcDateTime().secsTo(isZep2 ? now.addDays(-40) : expected);
        QVERIFY2(qAbs(off) <= 60, qPrintable(QString::number(off)));
    }

    void fieldsTakeWhatTheyMayAndShowWhatTheModuleSays()
    {
        Program program;
        program.answers = {{"AT+POS=?", {"+POS=10,20"}},
                           {"AT+PREPASS_CFG=?", {"+PREPASS_CFG=0,0,2030-1-1T0:0:0Z,2030-1-8T0:0:0Z,7.5,90,5,9,5,30"}}};
        program.connectTo(ZepBoard::ZEP2);
        program.tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE);
        const QString position = "GNSS position: %1 parameter(s) %2 module";
        const QString prediction = "Pass prediction: %1 parameter(s) %2 module";
        for (const auto &[heading, field, typed, sent] : {std::tuple{position, "Longitude", "90.5", ""},
                                                          {position, "Longitude", "4,5", ""},
                                                          {position, "Longitude", "90", "AT+POS=10,90"},
                                                          {position, "Latitude", "-45.123456", "AT+POS=-45.1235,20"},
                                                          {prediction, "Duration", "183", ""},
                                                          {prediction, "Min. elevation", "0,04", ""},
                                                          {prediction, "Min. elevation", "90.01", ""},
                                                          {prediction, "Min. pass duration", "61", ""}}) {
            const QString get = heading.arg("Get", "from");
            const QString set = heading.arg("Set", "in");
            const bool good = qstrlen(sent) > 0;
            program.click(get);
            const QString told = program.text(field);
            program.enter(field, typed);
            QCOMPARE(program.text(field), typed);
            QCOMPARE(program.enabled(set), good);
            program.answers[sent] = {"+ERROR=1"};
            program.click(good ? set : get);
            QCOMPARE(program.text(field), told); // the module said what was known before, or refused
            QVERIFY(!good || program.peer.requests().constLast() == sent);
        }
    }

    void rangerTakesEachNumberAtOnce()
    {
        Program program;
        program.connectTo(ZepBoard::RANGER);
        QVERIFY2(!program.enabled("Satellite infos"), "a periodic Ranger predicts nothing");
        program.tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE);
        QVERIFY(!program.field("Latitude")->isEnabled() && !program.field("Longitude")->isEnabled());
        QVERIFY(!program.find("Pass prediction: Set parameter(s) in module") && !program.field("Duration"));
        for (const char *typed : {"4.25", "4."}) {
            program.enter("Min. elevation", typed);
            QCOMPARE(program.text("Min. elevation"), typed);
            QCOMPARE(program.tx()->prepassProfile()->config().minElevation, QString(typed).toDouble());
        }
        for (const char *typed : {"95", "96"}) { // the field has the focus; the second time nothing changes
            program.enter("Min. elevation", typed);
            program.peer.say("+PREPASS_CFG=0,0,2030-1-1T0:0:0Z,2030-1-8T0:0:0Z,7,90,5,9,5,30");
            QTRY_COMPARE(program.text("Min. elevation"), "7");
        }
        QCOMPARE(program.peer.requests(), QStringList());
    }

    void uploadRestsDuringASequence()
    {
        const QString upload = "AOP data: Set parameter(s) in module";
        const QString pass = QDateTime::currentDateTimeUtc().addDays(1).toString(u"yyyy-M-dTH:m:sZ");
        HttpServer server;
        server.serve("200 OK", bulletins(1));
        Program program(server.url());
        program.answers["AT+NEXTPASS=?"] = {"+NEXTPASS=A," + pass + ',' + pass + ",600,45"};
        program.connectTo(ZepBoard::ZEP2);
        program.tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE);
        program.tx()->addPayloadItem("00000000");
        QVERIFY2(!program.enabled(upload), "nothing to upload");
        program.click(download);
        QTRY_VERIFY(program.enabled(upload));
        program.tx()->start(1);
        QVERIFY(program.tx()->sequenceRunning() && !program.enabled(upload));
        program.click(download);
        QTRY_VERIFY(server.requests.size() == 2 && program.find(download));
        QVERIFY2(!program.enabled(upload), "a download wakes it");
        program.tx()->stop();
        QVERIFY(program.enabled(upload));
    }

    void downloadTellsHowItEndedAndTilesRunThroughThePalette()
    {
        HttpServer server;
        server.serve("500 Internal Server Error", "x");
        Program program(server.url());
        program.connectTo(ZepBoard::ZEP1);
        program.click("Satellite infos");
        QVERIFY(program.find("No satellite info available"));
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("Error: .*"));
        program.click(download);
        const QString reason = "Unable to fetch last AOP data from server. Check your internet access.";
        QTRY_VERIFY(program.find("ERROR: " + reason));
        server.serve("200 OK", bulletins(20));
        program.click(download);
        QTRY_VERIFY(program.find("AOP data downloaded successfully!"));
        QTRY_VERIFY(program.find("Check satellite pane for more info."));

        const auto colour = [&program](int row) {
            const QQuickItem *tile = program.find(QString("S%1").arg(row), "background");
            return tile->property("background").value<QQuickItem *>()->property("color").value<QColor>().rgb();
        };
        QSet<QRgb> colours;
        for (int row = 0; row < 20; ++row) {
            colours << colour(row);
        }
        QCOMPARE(colours.size(), 19);
        QCOMPARE(colour(19), colour(0));
        program.hover("S1", "background");
        QTRY_VERIFY(
            program.find(program.tx()->prepassProfile()->satelliteAopModel()->satelliteAt(1)->aopTooltipHtml()));
    }

    void importEndsTheSpinnerHoweverItEnds()
    {
        Program program;
        program.connectTo(ZepBoard::ZEP1);
        const QString hint = "Please import a CSV file exported from HelioWeb";
        const QString folder = QUrl::fromLocalFile(program.folder.path()).toString();
        Screen::evaluate(program.find("Satellite pass predictions"), "importDialog.currentFolder = '" + folder + "'");
        for (const auto &end : {QStringLiteral("Cancel"), QStringLiteral("gone")}) {
            QFile file("passes.csv");
            QVERIFY(file.open(QIODevice::WriteOnly));
            program.click("Import data");
            QVERIFY(program.find("Importing data") && !program.find(hint));
            program.click("passes.csv");
            if (end == "gone") {
                file.remove();
                QTest::ignoreMessage(QtCriticalMsg, "No such file or directory");
                program.click("Open");
                QTRY_VERIFY(program.find("Error: Unable to open file: " + program.folder.filePath("passes.csv")));
            }
            program.click(end == "gone" ? "OK" : end);
            QTRY_VERIFY(!program.find("Importing data") && !program.find("OK") && !program.find("Cancel"));
        }
        QVERIFY(program.find("No data available.") && program.find(hint));
    }
};

QTEST_MAIN(tst_Prediction)
#include "tst_prediction.moc"
