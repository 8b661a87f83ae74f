// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "AtCmdHandler.h"
#include "Ranger.h"
#include "TBX.h"
#include "Zep1.h"
#include "Zep2.h"

#include <QMetaEnum>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestBoards : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatSetsTheVariantsApart()
    {
        const Zep1 zep1(nullptr, 9600);
        const Zep2 zep2(nullptr, 9600);
        const TBX tbx(nullptr, 9600);
        const Ranger ranger(nullptr, 115200);
        auto common = zep2.regexMap();
        QCOMPARE(common.remove(AtCmdHandler::RX) + common.remove(AtCmdHandler::BC), 2);
        QCOMPARE(common, tbx.regexMap());
        const QHash<const ZepBoard *, int> patternCounts{{&zep1, 9}, {&zep2, 19}, {&tbx, 17}, {&ranger, 24}};
        for (auto count = patternCounts.cbegin(); count != patternCounts.cend(); ++count) {
            const ZepBoard *const board = count.key();
            const bool isRanger = board == &ranger;
            QVERIFY(board->isAwake() != isRanger && board->loraCompatible() == isRanger);
            QCOMPARE(board->logSource(), isRanger ? Logger::RNG : Logger::ZEP);
            QCOMPARE(board->portSettings().baudRate, isRanger ? 115200 : 9600);
            // A word that is misspelt in a pattern leaves the whole empty, and what is shown of it.
            const auto patterns = board->regexMap();
            QCOMPARE(patterns.size(), count.value());
            for (auto entry = patterns.cbegin(); entry != patterns.cend(); ++entry) {
                const char *const word = QMetaEnum::fromType<AtCmdHandler::CmdId>().valueToKey(entry.key());
                const bool nameless = entry.key() == AtCmdHandler::OK || entry.key() == AtCmdHandler::ALRT_LIGHT;
                QVERIFY2(nameless != QRegularExpression(entry.value()).namedCaptureGroups().contains(QString(word)),
                         word);
            }
        }
    }

    void identityIsInUpperCaseAndTheSerialNumberAsItIs()
    {
        Zep1 board(nullptr, 9600);
        QCOMPARE(board.addr() + board.id() + board.serialNumber(), u"NANA"_s); // the address is empty
        board.setModule(ZepBoard::ZEP1);
        board.setId(u"0a1b"_s);
        board.setAddr(u"0c1d"_s);
        board.setSerialNumber(u"zep"_s);
        QCOMPARE(board.id() + board.addr() + board.serialNumber() + board.name(), u"0A1B0C1DzepZEP1"_s);
        board.setFirmwareVersion(u"1,SW2.0.0"_s); // which would do on a Ranger
        QVERIFY(!board.loraStackIntegrated());
    }

    void firmwareWithLoRa()
    {
        Ranger ranger(nullptr, 115200);
        ZepBoard &board = ranger; // as the session calls it
        QSignalSpy changed(&board, &ZepBoard::loraStackIntegratedChanged);
        for (const QString &firmware : {u"1,SW1.4.0"_s, u"12,SW2.0.0"_s, u"1,SW1x4y0"_s}) {
            board.setFirmwareVersion(firmware);
            QVERIFY2(board.loraStackIntegrated(), qPrintable(firmware));
        }
        for (const QString &firmware : {u"1,SW1.3.9"_s, u"1,SW0.9.9"_s, u"SW1.4.0"_s, u"1,SW1.10.0"_s}) {
            board.setFirmwareVersion(u"1,SW1.4.0"_s); // what was true must not stay so
            if (firmware.startsWith(u'S') || firmware.contains("10"_L1)) {
                QTest::ignoreMessage(QtCriticalMsg,
                                     "Unable to identify Ranger firmware version and detect LoRa connectivity status");
            }
            board.setFirmwareVersion(firmware);
            QVERIFY2(!board.loraStackIntegrated(), qPrintable(firmware));
        }
        QCOMPARE(changed.count(), 11);
    }
};

QTEST_GUILESS_MAIN(TestBoards)
#include "tst_boards.moc"
