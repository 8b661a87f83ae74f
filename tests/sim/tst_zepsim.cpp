// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Options.h"
#include "PrepassModel.h"
#include "SimSession.h"

#include <QBuffer>
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
    // Those that the fault run asks for show themselves there.
    void bulletinsAreServedWithTheFaultAskedFor()
    {
        const SimSession sim(SimOptions{.bulletinPort = quint16(0)});
        QNetworkAccessManager manager;
        // status; whether there is a list of errors, an unknown status; satellites, those with an identifier, those out
        // of service
        using Expected = QList<qsizetype>;
        for (const auto &[mode, path, expected] :
             {std::tuple("ok", "fleetfeed?login=a&password=b", Expected{200, 0, 0, 6, 6, 1}),
              {"ok", "fleetfeeds", {404, 0, 0, 0, 0, 0}},
              {"empty", "fleetfeed", {200, 0, 0, 0, 0, 0}},
              {"errors", "fleetfeed", {200, 1, 0, 6, 6, 1}},
              {"unknown-status", "fleetfeed", {200, 0, 1, 6, 6, 1}},
              {"no-ident", "fleetfeed", {200, 0, 0, 6, 5, 1}}}) {
            QCOMPARE(sim.tell(QStringLiteral("bulletins ") + mode), "ok");
            const std::unique_ptr<QNetworkReply> reply(
                manager.get(QNetworkRequest(QUrl(sim.simulator->bulletinUrl()).resolved(QUrl(path)))));
            QVERIFY2(QTest::qWaitFor([&] { return reply->isFinished(); }), mode);
            const QByteArray body = reply->readAll();
            const QJsonObject root = QJsonDocument::fromJson(body).object();
            const QJsonArray list = root["satellitesInformation"].toArray();
            const qsizetype status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
            QCOMPARE((Expected{status, root.contains("errors"), body.contains("HELIO-9"), list.size(),
                               body.count("fleetfeedIdent"), body.count("OUT OF SERVICE")}),
                     expected);
        }
    }

    void passTableIsOneThatTheProgramTakes()
    {
        QProcess process;
        process.start(program(), {"--passes-csv", "--from", "2026-03-20T12:00:00Z", "--hours", "48"});
        QVERIFY2(process.waitForFinished() && process.exitCode() == 0, qPrintable(process.errorString()));
        QByteArray table = process.readAllStandardOutput();
        QVERIFY2(!table.contains("Boreas-E"), "a satellite that is out of service");
        QBuffer file(&table);
        QVERIFY(file.open(QIODevice::ReadOnly));
        PrepassModel passes;
        QVERIFY(passes.loadFromCsv(file, readDeviceDate("2026-03-20T12:00:00Z")));
        QCOMPARE(passes.rowCount(), int(table.count('\n')) - 1);
        QVERIFY(passes.rowCount() > 20);
    }

    void badConsoleLineIsRefused()
    {
        const SimSession sim;
        for (const char *line : {"", "nonsense", "rx xyz", "mute -1", "late 1.5", "wake", "split now", "pass",
                                 "pass 1 2 3", "blacklist 9", "bulletins ok", "refuse PACQ", "plug", "rx"}) {
            const QString answer = sim.simulator->execute(line);
            QVERIFY2(answer.startsWith("error: ") && !answer.contains('\n'), line);
        }
    }

    void commandLineIsReadOrRefused()
    {
        const auto read = [](const QString &line) {
            return readOptions(("zepsim " + line).split(' ', Qt::SkipEmptyParts));
        };
        for (const char *line :
             {"", "--board zep1 --fast", "--board zep1 --airtime -5", "--board zep1 --seed x", "--board zep1 zep2",
              "--passes-csv --from 2026-02-30T00:00:00Z", "--passes-csv --separator \t", "--board zep1 --hours 3"}) {
            const SimOptionsResult result = read(line);
            QVERIFY2(!result.options && result.exitCode == 2 && !result.message.isEmpty(), line);
        }
        QCOMPARE(read("--board tbx --link /p/t").options.value().consoleSocket, QStringLiteral("/p/t.console"));
        const SimOptionsResult table = read("--passes-csv --from 2026-02-28");
        QVERIFY(table.options && table.exitCode == 0 && table.message.isEmpty());
    }

    void programEndsCleanlyBySignalOnly()
    {
        const QTemporaryDir folder;
        const QString link = folder.filePath("port");
        QProcess process;
        const auto saysThePort = [&] {
            return QTest::qWaitFor([&] { return process.canReadLine(); }) &&
                   process.readLine().trimmed() == QFile::symLinkTarget(link).toUtf8();
        };
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(program(), {"--board", "zep2", "--link", link});
        QVERIFY2(saysThePort(), qPrintable(process.errorString()));
        SimClient client(link);
        QCOMPARE(client.ask("AT+PING=?"), "+OK"); // after standard input has ended
        QLocalSocket console;
        console.connectToServer(link + ".console");
        console.write("nonsense\nhelp\nunplug\nplug\n");
        QByteArray answers;
        QVERIFY(QTest::qWaitFor([&] { return (answers += console.readAll()).endsWith("\nok\nok\nok\n"); }));
        QVERIFY2(answers.startsWith("error: unknown command") && answers.contains("\ntx-error N: "), answers);
        QVERIFY(saysThePort());
        QVERIFY2(!Simulator({.consoleSocket = link + ".console"}).start(), "two simulators on one console");

        process.terminate();
        QVERIFY(process.waitForFinished());
        QVERIFY(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0);
        QVERIFY(!QFileInfo(link).isSymLink() && !QFileInfo::exists(link + ".console"));
    }
};

QTEST_GUILESS_MAIN(TestZepsim)
#include "tst_zepsim.moc"
