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

#pragma GCC diagnostic ignored "-Wmissing-field-initializers" // the options left out have defaults

using namespace Qt::StringLiterals;

namespace {

const QString block = u"C501"_s + QString(u"0"_s).repeated(28); // its closing byte is wrong

/// What a device says to requests; lines are separated by bars on either side.
QString ask(SimDevice &device, const QString &requests)
{
    if (!device.isListening()) {
        device.wakeUp();
    }
    QStringList lines;
    for (const QString &request : requests.split(u'|')) {
        lines += device.request(request).lines;
    }
    return lines.join(u'|');
}

} // namespace

// The device's answers, without the wire that carries them.
class TestSimDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badRequestGetsItsOwnErrorAndWhatWasSetIsReported_data()
    {
        QTest::addColumn<Board>("board");
        QTest::addColumn<QString>("requests");
        QTest::addColumn<QString>("answers");
        const auto rows = [](int code, Board board, const QString &requests) {
            for (const QString &request : requests.split(u'|')) {
                QTest::addRow("%d %s", int(board), qPrintable(request.left(40)))
                    << board << request << u"+ERROR=%1"_s.arg(code);
            }
        };
        rows(6, Board::Zep2, u"AT+NONSENSE=?|hello|AT+SN=?"_s); // the last is another board's, as this one
        rows(6, Board::Ranger, u"AT+TX=00"_s);
        rows(7, Board::Zep2, u"AT+id=?|AT+=?"_s);
        // the number of parameters
        rows(3, Board::Zep2, u"AT+ID|AT+ID=|AT+TX=|AT+POS=43.5|AT+NEXTPASS=3"_s);
        rows(4, Board::Zep2, u"AT+ID=1|AT+RST=?|AT+TX=00112233,0x1,9"_s);
        rows(4, Board::Zep1, u"AT+TX=00112233,0x1"_s);
        // the form of a parameter
        rows(2, Board::Zep1, u"AT+PWR=high"_s);
        rows(2, Board::Zep2, u"AT+POS=4.5.6,1|AT+POS=,1|AT+RCONF=C5|AT+TX=hello|AT+TX=0011,4"_s);
        rows(2, Board::Zep2, u"AT+UDATE=2026-01-05 10:11:12|AT+UDATE=2026-01-05T10:11:12"_s);
        rows(2, Board::Ranger, u"AT+LORA_AEUI=1,2,3,4,5,6,7,8|AT+PACQ=60.5"_s);
        // the value of a parameter
        rows(5, Board::Zep1, u"AT+PWR=99|AT+AFMT=1,8,32|AT+PWR=99999999999999999999"_s);
        rows(5, Board::Zep2, u"AT+POS=91,0|AT+UDATE=2026-02-30T10:11:12Z|AT+PREPASS_EN=3|AT+SAT=9,1,1"_s);
        rows(5, Board::Zep2, u"AT+TX=0011,0x2|AT+RCONF="_s + block);
        // the length of a message, and the queue that is empty
        rows(20, Board::Zep2, u"AT+TX=001122|AT+TX=0011223|AT+TX=00112233,0x4"_s);
        rows(20, Board::Tbx, u"AT+TXDATA="_s + u"00"_s.repeated(28));
        rows(20, Board::Zep1, u"AT+TX="_s + u"00"_s.repeated(32));
        rows(22, Board::Zep2, u"AT+ATXSTART="_s);
        const auto row = [](Board board, const QString &setting, const QString &reported) {
            const QString word = setting.section(u'=', 0, 0);
            QTest::addRow("%s", qPrintable(setting))
                << board << u"AT+%1|AT+%2=?"_s.arg(setting, word) << u"+OK|+%1=%2"_s.arg(word, reported);
        };
        row(Board::Zep1, u"PWR=500"_s, u"500"_s);
        row(Board::Zep1, u"ATXFRQ=401000000,1"_s, u"401000000,1"_s);
        row(Board::Zep2, u"UDATE=2031-03-04T23:59:58Z"_s, u"2031-3-4T23:59:58Z"_s);
        row(Board::Zep2, u"POS=-33.85,151.2"_s, u"-33.85,151.2"_s);
        row(Board::Zep2, u"ATXRP=4"_s, u"4,60000"_s); // what is left out stays, as below
        row(Board::Ranger, u"ALRT_LIGHT=1"_s, u"1,400,3000"_s);
        row(Board::Ranger, u"LORA_AEUI=00,11,22,33,44,55,66,fF"_s, u"00,11,22,33,44,55,66,fF"_s);
    }

    void badRequestGetsItsOwnErrorAndWhatWasSetIsReported()
    {
        QFETCH(Board, board);
        QFETCH(QString, requests);
        QFETCH(QString, answers);
        SimDevice device(SimOptions{.board = board});
        QCOMPARE(ask(device, requests), answers);
    }

    void refusedRequestChangesNothing()
    {
        SimDevice device(SimOptions{.board = Board::Tbx});
        const QString queries = u"AT+POS=?|AT+RCONF=?|AT+PREPASS_CFG=?|AT+AOP=?|AT+TXFIFO=?"_s;
        const QString before = ask(device, queries);
        const QString refused = ask(device, u"AT+POS=1,181|AT+PREPASS_CFG=1,2|AT+TXDATA=001122|"
                                            "AT+AOP=3,2026-1-1T0:0:0Z,1,2,3,4,5,x|AT+RCONF="_s +
                                                block);
        QCOMPARE(refused, u"+ERROR=5|+ERROR=3|+ERROR=20|+ERROR=2|+ERROR=5"_s);
        QCOMPARE(ask(device, queries), before);
    }

    void everyQueryIsAnsweredInTheGrammarOfTheBoard()
    {
        using Codec = AtCmdHandler;
        // These have a pattern for what the device says on its own, and no query.
        const QList<Codec::CmdId> unasked{Codec::OK, Codec::ERROR, Codec::TX, Codec::RX, Codec::BC, Codec::ASSERT};
        const auto words = QMetaEnum::fromType<Codec::CmdId>();
        for (const auto &[board, patterns] : {std::pair(Board::Zep1, Zep1(nullptr, 9600).regexMap()),
                                              {Board::Zep2, Zep2(nullptr, 9600).regexMap()},
                                              {Board::Tbx, TBX(nullptr, 9600).regexMap()},
                                              {Board::Ranger, Ranger(nullptr, 115200).regexMap()}}) {
            SimDevice device(SimOptions{.board = board});
            Codec codec(nullptr, patterns);
            for (int i = 0; i < words.keyCount(); ++i) {
                const auto id = Codec::CmdId(words.value(i));
                const bool hasData = patterns.contains(id) && !unasked.contains(id);
                const QString lines = ask(device, u"AT+%1=?"_s.arg(QLatin1String(words.key(i))));
                for (const QString &line : lines.split(u'|')) {
                    QVERIFY2(codec.parseMessage(line, false), qPrintable(words.key(i) + line));
                    QVERIFY2(!hasData || codec.cmdId() == id, qPrintable(line));
                }
            }
        }
    }

    void bulletinAndStatusReachTheListing()
    {
        SimDevice device(SimOptions{});
        const QString line = u"AOP=d,2026-06-07T08:09:10Z,7000.5,98,1,-2,100,-0.5"_s;
        QCOMPARE(ask(device, u"AT+"_s + QString(line).replace(u'd', u'D') + u"|AT+SAT=D,1,3"_s), u"+OK|+OK"_s);
        const QString bulletins = ask(device, u"AT+AOP=?"_s);
        QVERIFY2(bulletins.contains(u"|+"_s + line + u'|') && bulletins.endsWith(u"|+AOP=end"_s),
                 qPrintable(bulletins));
        SimPrediction &prediction = device.prediction();
        QVERIFY(prediction.toggleBlacklisted("D") && prediction.toggleBlacklisted("4"));
        QVERIFY(prediction.toggleBlacklisted("4") && !prediction.toggleBlacklisted("9"));
        const QString statuses = ask(device, u"AT+SAT=?"_s);
        QVERIFY2(statuses.contains(u"|+SAT=d,1,3,blacklisted|"_s), qPrintable(statuses));
        QCOMPARE(statuses.count(u"blacklisted"_s), 1);
        QCOMPARE(ask(device, u"AT+AOP=?"_s), QString(bulletins).replace(line, line + u",blacklisted"_s));
        prediction.forgetBulletins();
        QCOMPARE(ask(device, u"AT+AOP=?"_s), u"+AOP=end"_s);
    }

    void nextPassFollowsWhatTheDeviceHolds_data()
    {
        QTest::addColumn<QString>("changes");
        QTest::addColumn<QString>("answer"); // satellite, start and end of the pass; none for an error
        QTest::addColumn<QString>("query");
        const auto row = [](const char *name, const char *changes, const char *answer, const char *query = "?") {
            QTest::newRow(name) << QString(changes) << QString(answer) << QString(query);
        };
        const char *usual = "3 0:37:7 1:22:53";
        row("as it stands", "", usual);
        row("a running pass is not the next", "UDATE=2031-03-04T00:40:00Z", "3 4:37:7 5:22:53");
        row("the other pole", "POS=-90,0", "3 2:37:7 3:22:53");
        row("another satellite earlier", "AOP=4,2031-03-03T23:50:00Z,12742,90,0,0,240,0", "4 0:27:7 1:12:53");
        row("another satellite later", "AOP=4,2031-03-04T00:10:00Z,12742,90,0,0,240,0", usual);
        row("the span begins later", "PREPASS_CFG=0,0,2031-3-4T2:0:0Z,2031-3-5T0:0:0Z,30,90,5,1000,5,30",
            "3 4:37:7 5:22:53");
        row("the span ends before", "PREPASS_CFG=0,0,2031-3-4T0:0:0Z,2031-3-4T0:37:0Z,30,90,5,1000,5,30", "");
        row("the span of another week", "UDATE=2031-04-04T00:00:00Z", "");
        row("too short", "PREPASS_CFG=0,0,2031-3-4T0:0:0Z,2031-3-5T0:0:0Z,30,90,46,1000,5,30", "");
        row("out of service", "SAT=3,3,3", "");
        row("status not known", "SAT=3,4,4", "");
        row("downlink off", "SAT=3,0,0", usual);
        row("downlink off, an answer wanted", "SAT=3,0,0", "", "3,3");
        row("downlink on, an answer wanted", "", usual, "3,3");
        row("no orbit for a satellite", "AOP=3,2031-03-04T00:00:00Z,0,0,0,0,0,0", "");
    }

    void nextPassFollowsWhatTheDeviceHolds()
    {
        QFETCH(QString, changes);
        QFETCH(QString, answer);
        QFETCH(QString, query);
        SimDevice device(SimOptions{.board = Board::Tbx});
        device.prediction().forgetBulletins();
        QCOMPARE(ask(device, u"AT+NEXTPASS="_s + query), u"+ERROR=3"_s);
        // Over the north pole an hour after the node; seen 30 degrees high or higher for 22.894 minutes on either side.
        QCOMPARE(ask(device, u"AT+POS=90,0|AT+UDATE=2031-03-04T00:00:00Z|"
                             "AT+AOP=3,2031-03-04T00:00:00Z,12742,90,0,0,240,0|"
                             "AT+PREPASS_CFG=0,0,2031-03-04T00:00:00Z,2031-03-05T00:00:00Z,30,90,5,1000,5,30"_s),
                 u"+OK|+OK|+OK|+OK"_s);
        QVERIFY(changes.isEmpty() || ask(device, u"AT+"_s + changes) == u"+OK"_s);
        const QStringList pass = answer.split(u' ');
        QCOMPARE(ask(device, u"AT+NEXTPASS="_s + query),
                 answer.isEmpty() ? u"+ERROR=5"_s
                                  : u"+NEXTPASS=%1,2031-3-4T%2Z,2031-3-4T%3Z,2746,90"_s.arg(pass[0], pass[1], pass[2]));
    }

    void sampleBlocksAreTheirModulation()
    {
        const QDir folder(QStringLiteral(QT_TESTCASE_SOURCEDIR "/../sim/rconf"));
        const auto message = [](int size) { return u"|AT+TXDATA="_s + u"A5"_s.repeated(size); };
        for (const auto &[name, good, bad] : {std::tuple(u"HRA2"_s, 24, 19), {u"HRZ"_s, 19, 20}, {u"SHRA4"_s, 3, 4}}) {
            const QStringList files = folder.entryList({u"radio_conf_*_%1.bin"_s.arg(name)});
            QCOMPARE(files.size(), 1);
            QFile file(folder.filePath(files.first()));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString hex = file.readAll().toHex().toUpper();
            QString damaged = hex;
            damaged[20] = damaged.at(20) == u'F' ? u'0' : u'F';
            SimDevice device(SimOptions{});
            QCOMPARE(ask(device, u"AT+RCONF=%1|AT+RCONF=%2|AT+RCONF=?"_s.arg(damaged, hex)),
                     u"+ERROR=5|+OK|+RCONF="_s + files.first().chopped(4).section(u'_', 2).replace(u'_', u','));
            QCOMPARE(ask(device, u"AT+PING=?"_s + message(bad) + message(good) + message(good - 2) + u",0x4"_s +
                                     message(good) + u",0x1"_s),
                     u"+OK|+ERROR=20|+OK|+OK|+ERROR=20"_s);
        }
    }

    void seedIsTheIdentity()
    {
        for (const auto &[board, query] : {std::pair(Board::Zep1, u"AT+SN=?"_s), {Board::Ranger, u"AT+AOP=?"_s}}) {
            SimDevice device(SimOptions{.board = board, .seed = 7});
            SimDevice same(SimOptions{.board = board, .seed = 7});
            SimDevice other(SimOptions{.board = board, .seed = 8});
            QCOMPARE(ask(same, query), ask(device, query));
            QVERIFY(ask(other, query) != ask(device, query));
        }
    }
};

QTEST_GUILESS_MAIN(TestSimDevice)
#include "tst_simdevice.moc"
