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
        program.answers = {{"AT+SN=?", {"+SN=ZEP12345678901"}}, {"AT+ADDR=?", {"+ADDR=1f2e"}}};
        program.connectTo(board);
        QCOMPARE(program.find("S/N: ZEP12345678901, ") != nullptr, board == ZepBoard::ZEP1);
        QCOMPARE(program.find("ADDR: 1F2E, ") != nullptr, isZep2 || board == ZepBoard::TBX);
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
        program.click("Choose a custom UTC date and time");
        QTRY_VERIFY(program.find("OK"));
        program.manager->disconnect();
        QTRY_VERIFY2(!program.find("OK"), "it outlives its session");
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
        // What was not edited is sent as it is held, and not with the two decimals that show.
        program.answers["AT+POS=?"] = {"+POS=43.5495,1.4848"};
        program.click(position.arg("Get", "from"));
        QCOMPARE(program.text("Latitude"), "43.55");
        program.enter("Longitude", "2");
        program.click(position.arg("Set", "in"));
        QCOMPARE(program.peer.requests().constLast(), "AT+POS=43.5495,2");

        program.enter("Latitude", "11");
        program.enter("Min. elevation", "11");
        program.manager->disconnect();
        program.answers["AT+POS=?"] = program.answers["AT+PREPASS_CFG=?"] = {"+ERROR=1"};
        program.connectTo(ZepBoard::ZEP2);
        program.tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE);
        QCOMPARE(program.text("Latitude"), "43.55");
        QCOMPARE(program.text("Min. elevation"), "7.5");
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
        program.enter("Min. pass duration", "33");
        QCOMPARE(program.tx()->prepassProfile()->config().minPassDuration, uchar(33));
        program.enter("Redundancy", "7");
        QCOMPARE(program.tx()->prepassProfile()->redundancy(), uchar(7));
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
        const QStringList names{upload, "GNSS position: Get parameter(s) from module",
                                "GNSS position: Set parameter(s) in module", "Periodic", "Pre-pass"};
        const QString pass = QDateTime::currentDateTimeUtc().addDays(1).toString(u"yyyy-M-dTH:m:sZ");
        HttpServer server;
        server.serve("200 OK", bulletins(1));
        Program program(server.url());
        program.answers["AT+NEXTPASS=?"] = {"+NEXTPASS=A," + pass + ',' + pass + ",600,45"};
        program.connectTo(ZepBoard::ZEP2);
        program.tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE);
        program.tx()->addPayloadItem("00000000");
        QVERIFY2(!program.enabled(upload), "nothing to upload");
        program.peer.say("+AOP=B,2030-1-1T0:0:0Z,7000,98,100,-23,101,-2"); // as the module reads them out
        QTRY_VERIFY(program.enabled(upload));
        program.click(download);
        const auto resting = [&] {
            QStringList found = names;
            found.removeIf([&](const QString &name) { return program.enabled(name); });
            return found;
        };
        QTRY_COMPARE(resting(), QStringList());
        program.tx()->setAckPending(true);
        QCOMPARE(resting(), names);
        program.tx()->setAckPending(false);
        program.tx()->start(1);
        program.tx()->setAckPending(false);
        QVERIFY(program.tx()->sequenceRunning());
        QCOMPARE(resting(), names);
        program.click(download);
        QTRY_VERIFY(server.requests.size() == 2 && program.find(download));
        QVERIFY2(!program.enabled(upload), "a download wakes it");
        program.tx()->stop();
        QVERIFY(program.enabled(upload));
    }

    // A model whose clear() names a row too many, whose sort is silent, and whose rows are named by a byte.
    void tableShowsItsPassesAndMarksThem()
    {
        Program program;
        program.connectTo(ZepBoard::ZEP1);
        QQuickItem *list = program.find("Satellite passes", "count");
        // Passes of these names, a letter each, that start in the order of the alphabet; the first one has begun.
        const auto import = [&program](const QString &names) {
            QFile file("passes.csv");
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("Satellite;Start date/time;Middle date/time;End date/time;Duration;Middle elevation;Start "
                       "azimuth;Middle azimuth;End azimuth\n");
            for (const QChar name : names) {
                const QDateTime start = QDateTime::currentDateTimeUtc().addSecs((name.unicode() - 'A') * 600 - 10);
                file.write((name + start.toString(";MM-dd-yyyy hh:mm:ss") + ";;;00:10:00;5;;;\n").toLatin1());
            }
            file.close();
            program.tx()->importPrepassData(program.folder.filePath("passes.csv"));
            QMetaObject::invokeMethod(program.tx(), "onUtcTimeRefreshOver");
        };
        const auto *style = program.singleton("Style", "Style")->property("color").value<QObject *>();
        const auto shown = [&] {
            QMap<qreal, QString> rows;
            for (const QQuickItem *item : list->property("contentItem").value<QQuickItem *>()->childItems()) {
                const qreal y = item->y() - list->property("contentY").toReal();
                if (item->property("satelliteName").isValid() && !item->property("isHeader").toBool() &&
                    item->isVisible() && y >= 0 && y < list->height()) {
                    const QVariant colour = item->property("background").value<QQuickItem *>()->property("color");
                    rows[y] = item->property("satelliteName").toString() +
                              (colour == style->property("sarvaneYellow") ? "*" : "") +
                              (colour == style->property("sarvanePink") ? "+" : "");
                }
            }
            return QStringList(rows.values()).join(' '); // few; clazy:exclude=container-anti-pattern
        };
        for (const auto &[names, rows] : {std::pair("CBA", "A* B+ C"), {"FED", "D+ E F"}, {"", ""}, {"ED", "D+ E"}}) {
            import(QString("ABC").repeated(100));
            QMetaObject::invokeMethod(list, "positionViewAtEnd");
            QTRY_VERIFY(shown().endsWith("C C C"));
            if (qstrlen(names) < 3) {
                program.click("Clear data");
            }
            if (qstrlen(names) > 0) {
                import(names);
            }
            QTRY_COMPARE(shown(), rows);
        }
    }

    void downloadTellsHowItEndedAndTilesRunThroughThePalette()
    {
        HttpServer server;
        server.serve("500 Internal Server Error", "x");
        Program program(server.url());
        program.connectTo(ZepBoard::ZEP1);
        program.click("Satellite infos");
        QVERIFY(program.find("No satellite info available"));
        expectCritical(QRegularExpression("Error: .*"));
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
        Screen::evaluate(program.find("Satellite pass predictions"), "importDialog.mFolder = '" + folder + "'");
        for (const auto &end : {QStringLiteral("Cancel"), QStringLiteral("gone")}) {
            QFile file("passes.csv");
            QVERIFY(file.open(QIODevice::WriteOnly));
            program.click("Import data");
            QVERIFY(program.find("Importing data") && !program.find(hint));
            program.click("passes.csv");
            if (end == "gone") {
                file.remove();
                expectCritical("No such file or directory");
                program.click("Open");
                QTRY_VERIFY(program.find("Error: Unable to open file: " + program.folder.filePath("passes.csv")));
            }
            program.click(end == "gone" ? "OK" : end);
            QTRY_VERIFY(!program.find("Importing data") && !program.find("OK") && !program.find("Cancel"));
        }
        QVERIFY(program.find("No data available.") && program.find(hint));
        program.click("Import data");
        program.manager->disconnect();
        QTRY_VERIFY2(!program.find("Cancel"), "the dialog outlives its session");
    }
};

QTEST_MAIN(tst_Prediction)
#include "tst_prediction.moc"
