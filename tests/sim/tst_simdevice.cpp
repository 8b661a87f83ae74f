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
    void badRequestChangesNothingAndWhatWasSetIsReported_data()
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
        rows(6, Board::Zep2, u"hello|AT+SN=?"_s); // the last is another board's
        rows(7, Board::Zep2, u"AT+id=?"_s);
        // the number of parameters
        rows(3, Board::Zep2, u"AT+ID|AT+ID=|AT+TX=|AT+POS=43.5"_s);
        rows(4, Board::Zep2, u"AT+ID=1|AT+RST=?|AT+TX=00112233,0x1,9"_s);
        rows(4, Board::Zep1, u"AT+TX=00112233,0x1"_s);
        // the form of a parameter
        rows(2, Board::Zep2, u"AT+POS=4.5.6,1|AT+RCONF=C5|AT+TX=hello|AT+TX=0011,4|AT+UDATE=2026-01-05T10:11:12"_s);
        rows(2, Board::Tbx, u"AT+AOP=3,2026-1-1T0:0:0Z,1,2,3,4,5,x"_s);
        rows(2, Board::Ranger, u"AT+LORA_AEUI=1,2,3,4,5,6,7,8|AT+PACQ=60.5"_s);
        // the value of a parameter
        rows(5, Board::Zep1, u"AT+AFMT=1,8,32|AT+PWR=99999999999999999999"_s);
        rows(5, Board::Zep2, u"AT+POS=1,181|AT+UDATE=2026-02-30T10:11:12Z|AT+SAT=9,1,1"_s);
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
        row(Board::Zep2, u"UDATE=2031-03-04T23:59:58Z"_s, u"2031-3-4T23:59:58Z"_s);
        row(Board::Zep2, u"ATXRP=4"_s, u"4,60000"_s); // what is left out stays, as below
        row(Board::Ranger, u"ALRT_LIGHT=1"_s, u"1,400,3000"_s);
    }

    void badRequestChangesNothingAndWhatWasSetIsReported()
    {
        QFETCH(Board, board);
        QFETCH(QString, requests);
        QFETCH(QString, answers);
        SimDevice device(SimOptions{.board = board});
        const QString queries = u"AT+POS=?|AT+RCONF=?|AT+PREPASS_CFG=?|AT+AOP=?|AT+TXFIFO=?"_s;
        const QString before = ask(device, queries);
        QCOMPARE(ask(device, requests), answers);
        QVERIFY(!answers.startsWith(u"+ERROR"_s) || ask(device, queries) == before);
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

    void nextPassFollowsWhatTheDeviceHolds_data()
    {
        QTest::addColumn<QString>("changes");
        QTest::addColumn<QString>("answer"); // satellite, start and end of the pass; none for an error
        QTest::addColumn<QString>("query");
        const auto row = [](const char *name, const char *changes, const char *answer, const char *query = "?") {
            QTest::newRow(name) << QString(changes) << QString(answer) << QString(query);
        };
        row("as it stands", "", "3 0:37:7 1:22:53");
        row("a running pass is not the next", "UDATE=2031-03-04T00:40:00Z", "3 4:37:7 5:22:53");
        row("another satellite earlier", "AOP=4,2031-03-03T23:50:00Z,12742,90,0,0,240,0", "4 0:27:7 1:12:53");
        row("the span begins later", "PREPASS_CFG=0,0,2031-3-4T2:0:0Z,2031-3-5T0:0:0Z,30,90,5,1000,5,30",
            "3 4:37:7 5:22:53");
        row("the span ends before", "PREPASS_CFG=0,0,2031-3-4T0:0:0Z,2031-3-4T0:37:0Z,30,90,5,1000,5,30", "");
        row("too short", "PREPASS_CFG=0,0,2031-3-4T0:0:0Z,2031-3-5T0:0:0Z,30,90,46,1000,5,30", "");
        row("out of service", "SAT=3,1,3", "");
        row("downlink off, an answer wanted", "SAT=3,0,1", "", "3,3");
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
        for (const auto &[name, good, bad] : {std::tuple(u"HRA2"_s, 24, 19), {u"HRZ"_s, 19, 20}, {u"SHRA4"_s, 3, 4}}) {
            QFile file(folder.filePath(folder.entryList({u"radio_conf_*_%1.bin"_s.arg(name)}).value(0)));
            QVERIFY(file.open(QIODevice::ReadOnly));
            SimDevice device(SimOptions{});
            const auto message = [](int size) { return u"|AT+TXDATA="_s + u"A5"_s.repeated(size); };
            // The two bytes of an attribute count.
            QCOMPARE(ask(device, u"AT+RCONF="_s + file.readAll().toHex() + message(bad) + message(good) +
                                     message(good - 2) + u",0x4"_s + message(good) + u",0x1"_s),
                     u"+OK|+ERROR=20|+OK|+OK|+ERROR=20"_s);
            QVERIFY(ask(device, u"AT+RCONF=?"_s).endsWith(u',' + name));
        }
    }
};

QTEST_GUILESS_MAIN(TestSimDevice)
#include "tst_simdevice.moc"
