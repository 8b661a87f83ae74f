// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Options.h"
#include "SimSession.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>

// The simulator around its device: the console, the web service and the program.
class TestZepsim : public QObject
{
    Q_OBJECT

    static QString program() { return QCoreApplication::applicationDirPath() + "/../sim/zepsim"; }

private Q_SLOTS:
    void bulletinsAreServedWithTheFaultAskedFor_data()
    {
        QTest::addColumn<QString>("path");
        // status, 0 for no answer; whether there is a body, a list of errors, an unknown status; satellites, those with
        // an identifier, those out of service
        QTest::addColumn<QList<qsizetype>>("expected");
        const QString path = "/mdr/resources/fleetfeed";
        const auto row = [](const char *modeAndCase, const QString &where, const QList<qsizetype> &expected) {
            QTest::newRow(modeAndCase) << where << expected;
        };
        row("ok, with a query", path + "?login=a&password=b", {200, 1, 0, 0, 6, 6, 1});
        row("ok, another path", path + "s", {404, 0, 0, 0, 0, 0, 0});
        row("500", path, {500, 1, 0, 0, 0, 0, 0});
        row("empty", path, {200, 0, 0, 0, 0, 0, 0});
        row("broken", path, {200, 1, 0, 0, 0, 0, 0});
        row("errors", path, {200, 1, 1, 0, 6, 6, 1});
        row("unknown-status", path, {200, 1, 0, 1, 6, 6, 1});
        row("no-ident", path, {200, 1, 0, 0, 6, 5, 1});
        row("silent", path, {0, 0, 0, 0, 0, 0, 0});
    }

    void bulletinsAreServedWithTheFaultAskedFor()
    {
        QFETCH(QString, path);
        QFETCH(QList<qsizetype>, expected);
        const QString mode = QString(QTest::currentDataTag()).section(',', 0, 0);
        SimSession sim(SimOptions{.bulletinPort = quint16(0)});
        QCOMPARE(sim.tell("bulletins " + mode), "ok");
        QNetworkAccessManager manager;
        QNetworkRequest request(QUrl(sim.simulator->bulletinUrl()).resolved(QUrl(path)));
        request.setTransferTimeout(mode == "silent" ? 300 : 5000);
        const std::unique_ptr<QNetworkReply> reply(manager.get(request));
        QVERIFY(QTest::qWaitFor([&] { return reply->isFinished(); }));
        const QByteArray body = reply->isOpen() ? reply->readAll() : QByteArray();
        const QJsonObject root = QJsonDocument::fromJson(body).object();
        const QJsonArray list = root["satellitesInformation"].toArray();
        QSet<QString> idents{QString()};
        qsizetype outOfService = 0;
        for (const QJsonValue &satellite : list) {
            const QJsonValue links = satellite["broadcastedStatus"];
            idents += links["fleetfeedIdent"].toString();
            outOfService += links["operatingStatus"].toString().count("OUT OF SERVICE");
            const QString date = satellite["aop"]["date"].toString().replace('_', 'T') + 'Z';
            const qint64 age = QDateTime::fromString(date, Qt::ISODate).secsTo(QDateTime::currentDateTimeUtc());
            QVERIFY2(age >= 0 && age < 2 * 3600, qPrintable(date));
        }
        const qsizetype status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        QCOMPARE((QList<qsizetype>{status, !body.isEmpty(), root.contains("errors"), body.contains("HELIO-9"),
                                   list.size(), idents.size() - 1, outOfService}),
                 expected);
    }

    void passTableIsThatOfTheDevice()
    {
        QProcess process;
        process.start(program(),
                      {"--passes-csv", "--from", "2026-03-20T12:00:00Z", "--hours", "48", "--separator", ";"});
        QVERIFY2(process.waitForFinished() && process.exitCode() == 0, qPrintable(process.errorString()));
        QStringList lines = QString::fromUtf8(process.readAllStandardOutput()).split('\n');
        QCOMPARE(lines.takeLast(), QString());
        QCOMPARE(lines.takeFirst(), QStringLiteral("Satellite;Start date/time;Middle date/time;End date/time;Duration;"
                                                   "Middle elevation;Start azimuth;Middle azimuth;End azimuth"));
        SimDevice device(SimOptions{});
        const auto answer = [&device](const QString &request) { return device.request(request).lines.first(); };
        QVERIFY(answer("AT+PREPASS_CFG=0,0,2026-3-20T12:0:0Z,2026-3-22T12:0:0Z,5,90,2,1000,5,30") == "+OK");
        QVERIFY(lines.size() > 20);
        const QString format = "MM-dd-yyyy hh:mm:ss";
        QDateTime previous = readDeviceDate("2026-03-20T11:00:00Z");
        for (const QString &line : qAsConst(lines)) {
            const QStringList fields = line.split(';');
            QCOMPARE(fields.size(), 9);
            QVERIFY2(!line.startsWith("Boreas-E"), "a satellite that is out of service");
            QDateTime dates[3];
            for (int i = 0; i < 3; ++i) {
                dates[i] = QDateTime::fromString(fields.at(i + 1), format);
                dates[i].setTimeSpec(Qt::UTC);
            }
            const auto &[start, middle, end] = dates;
            QCOMPARE(QTime::fromString(fields.at(4), "hh:mm:ss").msecsSinceStartOfDay(), start.msecsTo(end));
            QVERIFY2(start >= previous && middle > start && middle < end, qPrintable(line));
            previous = start;
            if (line.startsWith("Cirrus")) {
                continue; // not one of the device's
            }
            // A minute ahead of each the device names this pass, if it names none that starts within the minute.
            QVERIFY(answer("AT+UDATE=" + start.addSecs(-60).toString(Qt::ISODate)) == "+OK");
            const QDateTime named = readDeviceDate(answer("AT+NEXTPASS=?").section(',', 1, 1));
            QVERIFY2(named <= start && !lines.filter(named.toString(format)).isEmpty(), qPrintable(line));
        }
    }

    void badConsoleLineIsRefused()
    {
        const SimSession sim;
        for (const char *line :
             {"",         "nonsense",   "rx",        "rx xyz",      "tx-error",  "tx-error one", "mute -1",
              "late 1.5", "garbage 0",  "wake",      "sleep",       "split now", "quit now",     "pass",
              "pass 1 0", "pass 1 2 3", "blacklist", "blacklist 9", "bulletins", "bulletins ok", "refuse PACQ"}) {
            const QString answer = sim.simulator->execute(line);
            QVERIFY2(answer.startsWith("error: ") && !answer.contains('\n'), line);
        }
    }

    void consoleIsReachableBySocketOnce()
    {
        const QTemporaryDir folder;
        const SimOptions options{.consoleSocket = folder.filePath("console")};
        {
            SimSession sim(options);
            QLocalSocket person;
            person.connectToServer(options.consoleSocket);
            person.write("rx 0102\nnonsense\nhelp\n");
            QCOMPARE(sim.client->hear(1), "+RX=0102");
            QByteArray answers;
            QVERIFY(QTest::qWaitFor([&] { return (answers += person.readAll()).count("ok\n") == 2; }));
            QVERIFY2(answers.startsWith("ok\nerror: unknown command \"nonsense\""), answers);
            QVERIFY2(answers.count('\n') > 20 && answers.contains("\ntx-error N: "), answers);
            QVERIFY2(!Simulator(options).start(), "two simulators on one console");
        }
        QVERIFY(!QFileInfo::exists(options.consoleSocket));
    }

    void commandLineIsReadOrRefused()
    {
        const auto read = [](const QString &line) {
            return readOptions(("zepsim " + line).split(' ', Qt::SkipEmptyParts));
        };
        for (const char *line :
             {"", "--board zep3", "--board zep1 --fast", "--board zep1 --airtime -5", "--board zep1 --seed x",
              "--board zep1 zep2", "--board zep1 --bulletins 65536", "--passes-csv --from 2026-02-30T00:00:00Z",
              "--passes-csv --hours 0", "--passes-csv --separator \t", "--board zep1 --hours 3"}) {
            const SimOptionsResult result = read(line);
            QVERIFY2(!result.options && result.exitCode == 2 && !result.message.isEmpty(), line);
        }
        QCOMPARE(read("--board tbx --link /p/t").options.value().consoleSocket, QStringLiteral("/p/t.console"));
        QCOMPARE(read("--board tbx --link /p/t --console /c").options.value().consoleSocket, QStringLiteral("/c"));
        QVERIFY(read("--board tbx").options.value().consoleSocket.isEmpty());
        const SimOptionsResult table = read("--passes-csv --from 2026-02-28");
        QVERIFY(table.options && table.exitCode == 0 && table.message.isEmpty());
    }

    void programEndsCleanlyBySignalOnly()
    {
        const QTemporaryDir folder;
        const QString link = folder.filePath("port");
        QFile trace(folder.filePath("trace"));
        QProcess process;
        const auto saysThePort = [&] {
            return QTest::qWaitFor([&] { return process.canReadLine(); }) &&
                   process.readLine().trimmed() == QFile::symLinkTarget(link).toUtf8();
        };
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(program(), {"--board", "zep2", "--link", link, "--trace", trace.fileName()});
        QVERIFY2(saysThePort(), qPrintable(process.errorString()));
        SimClient client(link);
        QCOMPARE(client.ask("AT+PING=?"), "+OK"); // after standard input has ended
        QLocalSocket console;
        console.connectToServer(link + ".console");
        console.write("unplug\nplug\n");
        QVERIFY(QTest::qWaitFor([&] { return console.bytesAvailable() == 6; }));
        QVERIFY(saysThePort());

        process.terminate();
        QVERIFY(process.waitForFinished());
        QVERIFY(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0);
        QVERIFY(!QFileInfo(link).isSymLink() && !QFileInfo::exists(link + ".console"));
        QVERIFY(trace.open(QIODevice::ReadOnly));
        const QByteArray log = trace.readAll();
        static const QRegularExpression expected("^\\d+ < AT\\+PING=\\?\n\\d+ > \\+OK\n\\d+ # unplug\n\\d+ # plug\n$");
        QVERIFY2(expected.match(log).hasMatch(), log);
    }
};

QTEST_GUILESS_MAIN(TestZepsim)
#include "tst_zepsim.moc"
