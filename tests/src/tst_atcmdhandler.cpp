// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "AtCmdHandler.h"
#include "Criticals.h"
#include "Ranger.h"
#include "TBX.h"
#include "WireNumber.h"
#include "Zep1.h"
#include "Zep2.h"

#include <QElapsedTimer>

#include <limits>

using namespace Qt::StringLiterals;

namespace {
struct Row
{
    ZepBoard::Module module;
    const char *line;     // "$" stands for a date; a request line is one of a configuration file
    const char *expected; // the parameters, joined by "/", or "!" and the message on the process log
};

#define NO_LINE "!Unable to extract command response id"
#define NO_DATA(word) "!Unable to extract " word " data"
constexpr Row rows[] = {
    {ZepBoard::ZEP2, "+id=1", NO_LINE},
    {ZepBoard::ZEP2, "\x01+ID=1", NO_LINE},
    {ZepBoard::ZEP2, "AT+ID:1", NO_LINE},
    {ZepBoard::ZEP2, "+CLOCK=1", "!Invalid AT command id: CLOCK"},
    {ZepBoard::ZEP2, "+OK=0", NO_DATA("OK")},
    {ZepBoard::ZEP1, "+PWR=99", NO_DATA("PWR")},
    {ZepBoard::ZEP1, "+PWR=10000", NO_DATA("PWR")},
    {ZepBoard::ZEP1, "+ATXFRQ=1234567890", NO_DATA("ATXFRQ")},
    {ZepBoard::ZEP1, "+TX=1,00", NO_DATA("TX")},
    {ZepBoard::ZEP1, "+SN=zep12345678901", NO_DATA("SN")},
    {ZepBoard::ZEP1, "+SN=ZEP123456789012", NO_DATA("SN")},
    {ZepBoard::ZEP2, "+PREPASS_EN=3", NO_DATA("PREPASS_EN")},
    {ZepBoard::ZEP2, "+AOP=end,blacklisted", NO_DATA("AOP")},
    {ZepBoard::ZEP2, "+NEXTPASS=9,$,$,30,45.5", NO_DATA("NEXTPASS")},
    {ZepBoard::RANGER, "+LORA_DEUI=00,1a,2B,33,44,55,66", NO_DATA("LORA_DEUI")},
    {ZepBoard::RANGER, "+PACQ_SENS=0,1,0,1,0,1", NO_DATA("PACQ_SENS")},

    {ZepBoard::ZEP2, "+ID:1f", "1f"},
    {ZepBoard::ZEP2, "+ID1f", "1f"},
    {ZepBoard::ZEP2, "AT+ID=1f", "1f"},
    {ZepBoard::ZEP2, "+ASSERT", ""},
    {ZepBoard::ZEP2, "+SN=ZEP12345678901", ""},
    {ZepBoard::TBX, "+RX=cafe", ""},
    {ZepBoard::ZEP1, "+TX=0,any text", "any text/0/any text"},
    {ZepBoard::ZEP2, "+TX=-3,", "/-3"},
    {ZepBoard::ZEP1, "+ATXFRQ=401630000,1", "401630000,1/,1"},
    {ZepBoard::ZEP2, "+TXFIFO=1,cafe,0x1F", "1,cafe,0x1F/1/cafe/1F"},
    {ZepBoard::ZEP2, "+TXFIFO=end", "end"},
    {ZepBoard::ZEP2, "+RCONF=399,401,27,HRZ,x", "399,401,27,HRZ,x/399/401/27/HRZ,x"},
    {ZepBoard::RANGER, "+AOP=9,$,1,2.5,3,-4,5,-6", "9,$,1,2.5,3,-4,5,-6/9/$/1/2.5/3/-4/5/-6"},
    {ZepBoard::RANGER, "+LORA_EN=|", "|"},
};
} // namespace

class TestAtCmdHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnCritical(); }

    void parse_data()
    {
        QTest::addColumn<Row>("row");
        for (const Row &row : rows) {
            QTest::addRow("%d%s", row.module, row.line) << row;
        }
    }

    void parse()
    {
        QFETCH(Row, row);
        const QString line = QString::fromLatin1(row.line).replace(u'$', "2024-1-2T3:4:5Z"_L1);
        const QString expected = QString::fromLatin1(row.expected).replace(u'$', "2024-1-2T3:4:5Z"_L1);
        AtCmdHandler codec(nullptr, m_patterns.value(row.module));
        if (expected.startsWith(u'!')) {
            expectCritical(row.expected + 1);
            QVERIFY(!codec.parseMessage(line, line.startsWith(u'A')));
            return;
        }
        QVERIFY(codec.parseMessage(line, line.startsWith(u'A')));
        QStringList read;
        for (uchar index = 0; index < codec.paramCount(); ++index) {
            read.append(codec.param(index));
        }
        QCOMPARE(read.join(u'/'), expected);
    }

    void errorCodesAndNumbersThatAreNone()
    {
        const QMap<QString, QString> messages{
            {u"1"_s, u"Unknown error"_s},
            {u"2"_s, u"Format of parameter is incorrect"_s},
            {u"44"_s, u"Transceiver error (reset)"_s},
            {u"4294967298"_s, u"Unknown error"_s}, // 2 in 32 bits
        };
        for (auto message = messages.cbegin(); message != messages.cend(); ++message) {
            QVERIFY(m_codec.parseMessage(u"+ERROR="_s + message.key(), false));
            QCOMPARE(m_codec.errorString(), message.value());
            QCOMPARE(m_codec.errorCode(), message.key().toUInt());
        }
        QVERIFY(m_codec.parseMessage(u"+ERROR=2"_s, false));
        for (const QString &text : {u"4294967296"_s, u"-1"_s, u"1.5"_s, u"--"_s, u"1-2"_s}) {
            QVERIFY(m_codec.parseMessage(u"+POS=%1,1.2.3"_s.arg(text), false));
            QCOMPARE(m_codec.paramUInt(1), 0U);
            QCOMPARE(m_codec.paramDouble(2), 0.0);
            QCOMPARE(m_codec.errorCode(), 0U); // the error before must not stick
        }
    }

    void numbersKeepTheirFormOnTheWireAndAreNeverInfinite()
    {
        using Limits = std::numeric_limits<double>;
        const QString largest = u"179769"_s + QString(303, u'0');
        for (const auto &[value, text] : {std::pair(0.0, u"0"_s),
                                          {45.5, u"45.5"_s},
                                          {-7195.6545, u"-7195.65"_s},
                                          {0.0001, u"0.0001"_s},
                                          {999999.4, u"999999"_s},
                                          // where an exponent would be shorter
                                          {0.00001, u"0.00001"_s},
                                          {-0.0000123456789, u"-0.0000123457"_s},
                                          {999999.5, u"1000000"_s},
                                          {-1234567.0, u"-1234570"_s},
                                          {2.5e-300, "0."_L1 + QString(299, u'0') + "25"_L1},
                                          {Limits::max(), largest},
                                          {Limits::infinity(), largest},
                                          {-Limits::infinity(), u'-' + largest},
                                          {Limits::quiet_NaN(), u"0"_s}}) {
            QCOMPARE(wireNumber(value), text);
        }
        const QString nines(400, u'9');
        QVERIFY(m_codec.parseMessage("+POS="_L1 + nines + ",-"_L1 + nines, false));
        QCOMPARE(m_codec.paramDouble(1), Limits::max());
        QCOMPARE(m_codec.paramDouble(2), Limits::lowest());
    }

    void failureLeavesWhatTheCallerReads()
    {
        QVERIFY(m_codec.parseMessage(u"+ATXRP=1,2"_s, false));
        expectCritical("Unable to extract UDATE data");
        QElapsedTimer timer;
        timer.start(); // no pattern may try every way to cut a line without an end
        QVERIFY(!m_codec.parseMessage(u"+UDATE="_s + QString(1 << 20, u'-'), false) && timer.elapsed() < 10000);
        QVERIFY(m_codec.cmdName() == "UDATE"_L1 && m_codec.paramCount() == 1 && m_codec.param(0) == "NA"_L1);
        expectCritical("Invalid AT command id: NOPE");
        QVERIFY(!m_codec.parseMessage(u"+NOPE"_s, false));
        QVERIFY(m_codec.cmdId() == -1 && m_codec.cmdName().isEmpty() && m_codec.paramCount() == 0);
        QVERIFY(m_codec.param(9).isEmpty() &&
                m_codec.paramChar(9).isNull()); // nor may trust in a pattern bring us down
    }

    void requests()
    {
        QCOMPARE(m_codec.buildRequest(AtCmdHandler::ID, {}), "AT+ID=?\r\n");
        QCOMPARE(m_codec.buildRequest(AtCmdHandler::RST, {QString()}), "AT+RST=\r\n");
        QCOMPARE(m_codec.buildRequest(AtCmdHandler::PWR, {u"1"_s, QString(), u"\u00e9"_s}), "AT+PWR=1,,\xe9\r\n");
    }

private:
    const QMap<ZepBoard::Module, QMap<AtCmdHandler::CmdId, QString>> m_patterns{
        {ZepBoard::ZEP1, Zep1(nullptr, 9600).regexMap()},
        {ZepBoard::ZEP2, Zep2(nullptr, 9600).regexMap()},
        {ZepBoard::TBX, TBX(nullptr, 9600).regexMap()},
        {ZepBoard::RANGER, Ranger(nullptr, 115200).regexMap()},
    };
    AtCmdHandler m_codec{nullptr, m_patterns.value(ZepBoard::ZEP2)};
};

QTEST_GUILESS_MAIN(TestAtCmdHandler)
#include "tst_atcmdhandler.moc"
