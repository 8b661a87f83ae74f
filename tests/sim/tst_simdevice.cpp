// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "AtCmdHandler.h"
#include "Ranger.h"
#include "SimDevice.h"
#include "TBX.h"
#include "Zep1.h"
#include "Zep2.h"

#include <QDir>
#include <QMetaEnum>
#include <QTest>

#include <memory>

namespace {

const QString block = QStringLiteral("C501") + QStringLiteral("0").repeated(28);

QString firstLine(SimDevice &device, const QString &request)
{
    return device.request(request).lines.value(0);
}

SimOptions onBoard(Board board)
{
    SimOptions options;
    options.board = board;
    return options;
}

} // namespace

// The device's answers, without the wire that carries them.
class TestSimDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badRequestGetsItsOwnError_data();
    void badRequestGetsItsOwnError();
    void refusedRequestChangesNothing();
    void everyQueryIsAnsweredInTheGrammarOfTheBoard_data();
    void everyQueryIsAnsweredInTheGrammarOfTheBoard();
    void whatWasSetIsReported_data();
    void whatWasSetIsReported();
    void clockRunsFromTheDateThatWasSet();
    void bulletinAndStatusReachTheListing();
    void nextPassFollowsWhatTheDeviceHolds_data();
    void nextPassFollowsWhatTheDeviceHolds();
    void sampleBlocksAreTheirModulation_data();
    void sampleBlocksAreTheirModulation();
    void seedIsTheIdentity();
};

void TestSimDevice::badRequestGetsItsOwnError_data()
{
    QTest::addColumn<Board>("board");
    QTest::addColumn<QString>("request");
    QTest::addColumn<int>("code");
    const auto row = [](Board board, const QString &request, int code) {
        QTest::addRow("%d %s", int(board), qPrintable(request.left(40))) << board << request << code;
    };
    row(Board::Zep2, "AT+NONSENSE=?", 6);
    row(Board::Zep2, "hello", 6);
    row(Board::Zep2, "AT+id=?", 7);
    row(Board::Zep2, "AT+=?", 7);
    // another board's
    row(Board::Zep1, "AT+ADDR=?", 6);
    row(Board::Zep1, "AT+UDATE=?", 6);
    row(Board::Zep2, "AT+SN=?", 6);
    row(Board::Tbx, "AT+PACQ=?", 6);
    row(Board::Ranger, "AT+TX=00", 6);
    row(Board::Ranger, "AT+SAT=?", 6);
    // the number of parameters
    row(Board::Zep2, "AT+ID", 3);
    row(Board::Zep2, "AT+ID=", 3);
    row(Board::Zep2, "AT+ID=1", 4);
    row(Board::Zep2, "AT+RST=?", 4);
    row(Board::Zep2, "AT+TX=", 3);
    row(Board::Zep2, "AT+TX=00112233,0x1,9", 4);
    row(Board::Zep1, "AT+TX=00112233,0x1", 4);
    row(Board::Zep2, "AT+POS=43.5", 3);
    row(Board::Ranger, "AT+LORA_AEUI=", 3);
    row(Board::Ranger, "AT+ALRT_SENS=1,1,1,1,1,1,1,1", 4);
    row(Board::Zep2, "AT+NEXTPASS=3", 3);
    // the form of a parameter
    row(Board::Zep1, "AT+PWR=high", 2);
    row(Board::Zep2, "AT+POS=4.5.6,1", 2);
    row(Board::Zep2, "AT+POS=,1", 2);
    row(Board::Zep2, "AT+UDATE=2026-01-05 10:11:12", 2);
    row(Board::Zep2, "AT+UDATE=2026-01-05T10:11:12", 2);
    row(Board::Zep2, "AT+RCONF=C5", 2);
    row(Board::Zep2, "AT+TX=hello", 2);
    row(Board::Zep2, "AT+TX=0011,4", 2);
    row(Board::Ranger, "AT+LORA_AEUI=1,2,3,4,5,6,7,8", 2);
    row(Board::Ranger, "AT+PACQ=60.5", 2);
    // the value of a parameter
    row(Board::Zep1, "AT+PWR=99", 5);
    row(Board::Zep1, "AT+AFMT=1,8,32", 5);
    row(Board::Zep1, "AT+PWR=99999999999999999999", 5);
    row(Board::Zep2, "AT+POS=91,0", 5);
    row(Board::Zep2, "AT+UDATE=2026-02-30T10:11:12Z", 5);
    row(Board::Zep2, "AT+PREPASS_EN=3", 5);
    row(Board::Zep2, "AT+SAT=9,1,1", 5);
    row(Board::Zep2, "AT+RCONF=" + block, 5);
    row(Board::Zep2, "AT+TX=0011,0x2", 5);
    row(Board::Ranger, "AT+PACQ=65536", 5);
    // the length of a message
    row(Board::Zep2, "AT+TX=001122", 20);
    row(Board::Zep2, "AT+TX=0011223", 20);
    row(Board::Zep2, "AT+TX=00112233,0x4", 20);
    row(Board::Tbx, "AT+TXDATA=" + QStringLiteral("00").repeated(28), 20);
    row(Board::Zep1, "AT+TX=" + QStringLiteral("00").repeated(32), 20);
    // the queue
    row(Board::Zep2, "AT+ATXSTART=", 22);
}

void TestSimDevice::badRequestGetsItsOwnError()
{
    QFETCH(Board, board);
    QFETCH(QString, request);
    QFETCH(int, code);
    SimDevice device(onBoard(board));
    if (device.canSleep()) {
        device.wakeUp();
    }
    QCOMPARE(device.request(request).lines, QStringList("+ERROR=" + QString::number(code)));
}

void TestSimDevice::refusedRequestChangesNothing()
{
    SimDevice device(onBoard(Board::Tbx));
    const QStringList queries{"AT+POS=?", "AT+RCONF=?", "AT+PREPASS_CFG=?", "AT+AOP=?", "AT+TXFIFO=?"};
    QStringList before;
    for (const QString &query : queries) {
        before += device.request(query).lines;
    }
    for (const QString &request : {QString("AT+POS=1,181"), "AT+RCONF=" + block, QString("AT+PREPASS_CFG=1,2"),
                                   QString("AT+AOP=3,2026-1-1T0:0:0Z,1,2,3,4,5,x"), QString("AT+TXDATA=001122")}) {
        QVERIFY(firstLine(device, request).startsWith("+ERROR"));
    }
    QStringList after;
    for (const QString &query : queries) {
        after += device.request(query).lines;
    }
    QCOMPARE(after, before);
}

void TestSimDevice::everyQueryIsAnsweredInTheGrammarOfTheBoard_data()
{
    QTest::addColumn<Board>("board");
    QTest::newRow("zep1") << Board::Zep1;
    QTest::newRow("zep2") << Board::Zep2;
    QTest::newRow("tbx") << Board::Tbx;
    QTest::newRow("ranger") << Board::Ranger;
}

void TestSimDevice::everyQueryIsAnsweredInTheGrammarOfTheBoard()
{
    QFETCH(Board, board);
    std::unique_ptr<ZepBoard> model;
    switch (board) {
    case Board::Zep1:
        model = std::make_unique<Zep1>(nullptr, 9600);
        break;
    case Board::Zep2:
        model = std::make_unique<Zep2>(nullptr, 9600);
        break;
    case Board::Tbx:
        model = std::make_unique<TBX>(nullptr, 9600);
        break;
    case Board::Ranger:
        model = std::make_unique<Ranger>(nullptr, 115200);
        break;
    }
    SimDevice device(onBoard(board));
    if (device.canSleep()) {
        device.wakeUp();
    }
    AtCmdHandler codec(nullptr, model->regexMap());
    // These have a pattern for what the device says on its own, and no query.
    const QList<AtCmdHandler::CmdId> unasked{AtCmdHandler::OK, AtCmdHandler::ERROR, AtCmdHandler::TX,
                                             AtCmdHandler::RX, AtCmdHandler::BC,    AtCmdHandler::ASSERT};
    const auto words = QMetaEnum::fromType<AtCmdHandler::CmdId>();
    for (int i = 0; i < words.keyCount(); ++i) {
        const auto id = AtCmdHandler::CmdId(words.value(i));
        const bool hasData = model->regexMap().contains(id) && !unasked.contains(id);
        const QStringList lines = device.request(QStringLiteral("AT+%1=?").arg(QLatin1String(words.key(i)))).lines;
        QVERIFY2(!lines.isEmpty(), words.key(i));
        for (const QString &line : lines) {
            QVERIFY2(codec.parseMessage(line, false), qPrintable(line));
            QVERIFY2(!hasData || codec.cmdId() == id, qPrintable(line));
        }
    }
}

void TestSimDevice::whatWasSetIsReported_data()
{
    QTest::addColumn<Board>("board");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("set");
    QTest::addColumn<QString>("reported");
    QTest::newRow("power") << Board::Zep1 << "PWR"
                           << "500"
                           << "500";
    QTest::newRow("frequency with its mark") << Board::Zep1 << "ATXFRQ"
                                             << "401000000,1"
                                             << "401000000,1";
    QTest::newRow("format") << Board::Zep1 << "AFMT"
                            << "0,16,0"
                            << "0,16,0";
    QTest::newRow("repetition alone keeps the period") << Board::Zep2 << "ATXRP"
                                                       << "4"
                                                       << "4,60000";
    QTest::newRow("repetition and period") << Board::Tbx << "ATXRP"
                                           << "10,30000"
                                           << "10,30000";
    QTest::newRow("position") << Board::Zep2 << "POS"
                              << "-33.85,151.2"
                              << "-33.85,151.2";
    QTest::newRow("alert alone keeps the bounds") << Board::Ranger << "ALRT_LIGHT"
                                                  << "1"
                                                  << "1,400,3000";
    QTest::newRow("alert with bounds") << Board::Ranger << "ALRT_LIGHT"
                                       << "1,5,6"
                                       << "1,5,6";
    QTest::newRow("sensors") << Board::Ranger << "PACQ_SENS"
                             << "1,0,1,0,1,0,1"
                             << "1,0,1,0,1,0,1";
    QTest::newRow("application EUI") << Board::Ranger << "LORA_AEUI"
                                     << "00,11,22,33,44,55,66,fF"
                                     << "00,11,22,33,44,55,66,fF";
}

void TestSimDevice::whatWasSetIsReported()
{
    QFETCH(Board, board);
    QFETCH(QString, command);
    QFETCH(QString, set);
    QFETCH(QString, reported);
    SimDevice device(onBoard(board));
    if (device.canSleep()) {
        device.wakeUp();
    }
    QCOMPARE(firstLine(device, QStringLiteral("AT+%1=%2").arg(command, set)), QStringLiteral("+OK"));
    QCOMPARE(firstLine(device, QStringLiteral("AT+%1=?").arg(command)),
             QStringLiteral("+%1=%2").arg(command, reported));
}

void TestSimDevice::clockRunsFromTheDateThatWasSet()
{
    SimDevice device(onBoard(Board::Zep2));
    QCOMPARE(firstLine(device, "AT+UDATE=2031-03-04T23:59:58Z"), QStringLiteral("+OK"));
    QCOMPARE(firstLine(device, "AT+UDATE=?"), QStringLiteral("+UDATE=2031-3-4T23:59:58Z"));
    QTRY_COMPARE_WITH_TIMEOUT(firstLine(device, "AT+UDATE=?"), QStringLiteral("+UDATE=2031-3-5T0:0:0Z"), 4000);
}

void TestSimDevice::bulletinAndStatusReachTheListing()
{
    SimDevice device(onBoard(Board::Zep2));
    QCOMPARE(firstLine(device, "AT+AOP=D,2026-06-07T08:09:10Z,7000.5,98,1,-2,100,-0.5"), QStringLiteral("+OK"));
    QVERIFY(device.request("AT+AOP=?").lines.contains("+AOP=d,2026-06-07T08:09:10Z,7000.5,98,1,-2,100,-0.5"));
    QCOMPARE(device.request("AT+AOP=?").lines.constLast(), QStringLiteral("+AOP=end"));
    QCOMPARE(firstLine(device, "AT+SAT=D,1,3"), QStringLiteral("+OK"));
    QVERIFY(device.prediction().toggleBlacklisted("D") && device.prediction().toggleBlacklisted("4"));
    QVERIFY(device.prediction().toggleBlacklisted("4") && !device.prediction().toggleBlacklisted("9"));
    QVERIFY(device.request("AT+SAT=?").lines.contains("+SAT=d,1,3,blacklisted"));
    QCOMPARE(device.request("AT+SAT=?").lines.filter("blacklisted").size(), 1);
    QCOMPARE(device.request("AT+AOP=?").lines.filter(QRegularExpression("^\\+AOP=d,.*,-0.5,blacklisted$")).size(), 1);
    device.prediction().forgetBulletins();
    QCOMPARE(device.request("AT+AOP=?").lines, QStringList("+AOP=end"));
}

void TestSimDevice::nextPassFollowsWhatTheDeviceHolds_data()
{
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("answer");
    const auto config = [](const char *span, const char *elevation, const char *minMinutes) {
        return QStringLiteral("AT+PREPASS_CFG=0,0,%1,%2,90,%3,1000,5,30").arg(span, elevation, minMinutes);
    };
    const auto row = [](const char *name, const QStringList &changes, const char *query, const char *answer) {
        QTest::newRow(name) << changes << QString(query) << QString(answer);
    };
    row("as it stands", {}, "?", "3,2031-3-4T0:37:7Z,2031-3-4T1:22:53Z,2746,90");
    row("a running pass is not the next", {"AT+UDATE=2031-03-04T00:40:00Z"}, "?",
        "3,2031-3-4T4:37:7Z,2031-3-4T5:22:53Z,2746,90");
    row("the other pole", {"AT+POS=-90,0"}, "?", "3,2031-3-4T2:37:7Z,2031-3-4T3:22:53Z,2746,90");
    row("another satellite earlier", {"AT+AOP=4,2031-03-03T23:50:00Z,12742,90,0,0,240,0"}, "?",
        "4,2031-3-4T0:27:7Z,2031-3-4T1:12:53Z,2746,90");
    row("another satellite later", {"AT+AOP=4,2031-03-04T00:10:00Z,12742,90,0,0,240,0"}, "?",
        "3,2031-3-4T0:37:7Z,2031-3-4T1:22:53Z,2746,90");
    row("the span begins later", {config("2031-03-04T02:00:00Z,2031-03-05T00:00:00Z", "30", "5")}, "?",
        "3,2031-3-4T4:37:7Z,2031-3-4T5:22:53Z,2746,90");
    row("the span ends before", {config("2031-03-04T00:00:00Z,2031-03-04T00:37:00Z", "30", "5")}, "?", "error 5");
    row("the span of another week", {"AT+UDATE=2031-04-04T00:00:00Z"}, "?", "error 5");
    row("too short", {config("2031-03-04T00:00:00Z,2031-03-05T00:00:00Z", "30", "46")}, "?", "error 5");
    row("out of service", {"AT+SAT=3,3,3"}, "?", "error 5");
    row("status not known", {"AT+SAT=3,4,4"}, "?", "error 5");
    row("downlink off", {"AT+SAT=3,0,0"}, "?", "3,2031-3-4T0:37:7Z,2031-3-4T1:22:53Z,2746,90");
    row("downlink off, an answer wanted", {"AT+SAT=3,0,0"}, "3,3", "error 5");
    row("downlink on, an answer wanted", {}, "3,3", "3,2031-3-4T0:37:7Z,2031-3-4T1:22:53Z,2746,90");
    row("no orbit for a satellite", {"AT+AOP=3,2031-03-04T00:00:00Z,0,0,0,0,0,0"}, "?", "error 5");
}

void TestSimDevice::nextPassFollowsWhatTheDeviceHolds()
{
    QFETCH(QStringList, changes);
    QFETCH(QString, query);
    QFETCH(QString, answer);
    SimDevice device(onBoard(Board::Tbx));
    device.prediction().forgetBulletins();
    QCOMPARE(firstLine(device, "AT+NEXTPASS=" + query), QStringLiteral("+ERROR=3"));
    // Over the north pole an hour after the node; seen 30 degrees high or higher for 22.894 minutes on either side.
    changes =
        QStringList{"AT+POS=90,0", "AT+UDATE=2031-03-04T00:00:00Z", "AT+AOP=3,2031-03-04T00:00:00Z,12742,90,0,0,240,0",
                    "AT+PREPASS_CFG=0,0,2031-03-04T00:00:00Z,2031-03-05T00:00:00Z,30,90,5,1000,5,30"} +
        changes;
    for (const QString &change : qAsConst(changes)) {
        QCOMPARE(firstLine(device, change), QStringLiteral("+OK"));
    }
    const QString expected = answer.startsWith("error") ? "+ERROR=" + answer.right(1) : "+NEXTPASS=" + answer;
    QCOMPARE(firstLine(device, "AT+NEXTPASS=" + query), expected);
}

void TestSimDevice::sampleBlocksAreTheirModulation_data()
{
    QTest::addColumn<QString>("modulation");
    QTest::addColumn<int>("goodSize");
    QTest::addColumn<int>("badSize");
    QTest::newRow("HRA2") << "HRA2" << 24 << 19;
    QTest::newRow("HRZ") << "HRZ" << 19 << 20;
    QTest::newRow("SHRA4") << "SHRA4" << 3 << 4;
}

void TestSimDevice::sampleBlocksAreTheirModulation()
{
    QFETCH(QString, modulation);
    QFETCH(int, goodSize);
    QFETCH(int, badSize);
    const QDir folder(QStringLiteral(QT_TESTCASE_SOURCEDIR "/../sim/rconf"));
    const QStringList names = folder.entryList({"radio_conf_*_" + modulation + ".bin"});
    QCOMPARE(names.size(), 1);
    QFile file(folder.filePath(names.first()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray hex = file.readAll().toHex().toUpper();
    QByteArray damaged = hex;
    damaged[20] = damaged.at(20) == 'F' ? '0' : 'F';

    SimDevice device(onBoard(Board::Zep2));
    QCOMPARE(firstLine(device, "AT+RCONF=" + damaged), QStringLiteral("+ERROR=5"));
    QCOMPARE(firstLine(device, "AT+RCONF=" + hex), QStringLiteral("+OK"));
    QString report = QFileInfo(file).completeBaseName().section('_', 2).replace('_', ',');
    QCOMPARE(firstLine(device, "AT+RCONF=?"), "+RCONF=" + report);
    const auto queue = [&device](int size, const QString &attribute) {
        return firstLine(device, "AT+TXDATA=" + QString("A5").repeated(size) + attribute);
    };
    QCOMPARE(queue(badSize, ""), QStringLiteral("+ERROR=20"));
    QCOMPARE(queue(goodSize, ""), QStringLiteral("+OK"));
    QCOMPARE(queue(goodSize - 2, ",0x4"), QStringLiteral("+OK"));
    QCOMPARE(queue(goodSize, ",0x1"), QStringLiteral("+ERROR=20"));
}

void TestSimDevice::seedIsTheIdentity()
{
    SimOptions options = onBoard(Board::Zep1);
    const QString serialNumber = firstLine(*std::make_unique<SimDevice>(options), "AT+SN=?");
    QCOMPARE(firstLine(*std::make_unique<SimDevice>(options), "AT+SN=?"), serialNumber);
    options.seed = 2;
    QVERIFY(firstLine(*std::make_unique<SimDevice>(options), "AT+SN=?") != serialNumber);
    options.board = Board::Ranger;
    const auto bulletins = [&options](quint32 seed) {
        options.seed = seed;
        SimDevice device(options);
        device.wakeUp();
        return device.request("AT+AOP=?").lines;
    };
    QCOMPARE(bulletins(7), bulletins(7));
    QVERIFY(bulletins(7) != bulletins(8));
}

QTEST_GUILESS_MAIN(TestSimDevice)
#include "tst_simdevice.moc"
