// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "AtCmdHandler.h"
#include "Criticals.h"
#include "Ranger.h"
#include "TBX.h"
#include "Zep1.h"
#include "Zep2.h"

#include <QMetaEnum>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestBoards : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnCritical(); }

    // A word that is misspelt in a pattern leaves the whole empty, and what is shown of it.
    void patternsNameTheirCommand()
    {
        for (const auto &patterns : {Zep1(nullptr, 9600).regexMap(), Zep2(nullptr, 9600).regexMap(),
                                     TBX(nullptr, 9600).regexMap(), Ranger(nullptr, 115200).regexMap()}) {
            for (auto entry = patterns.cbegin(); entry != patterns.cend(); ++entry) {
                const char *const word = QMetaEnum::fromType<AtCmdHandler::CmdId>().valueToKey(entry.key());
                const bool nameless = entry.key() == AtCmdHandler::OK || entry.key() == AtCmdHandler::ALRT_LIGHT;
                QVERIFY2(nameless != QRegularExpression(entry.value()).namedCaptureGroups().contains(QString(word)),
                         word);
            }
        }
    }

    void firmwareWithLoRa()
    {
        Ranger ranger(nullptr, 115200);
        ZepBoard &board = ranger; // as the session calls it
        QSignalSpy changed(&board, &ZepBoard::loraStackIntegratedChanged);
        for (const auto &[firmware, hasLora] : {std::pair(u"1,SW1.4.0"_s, true),
                                                {u"12,SW2.0.0"_s, true},
                                                {u"1,SW1x4y0"_s, true},
                                                {u"1,SW1.3.9"_s, false},
                                                {u"1,SW0.9.9"_s, false},
                                                {u"SW1.4.0"_s, false},
                                                {u"1,SW1.10.0"_s, false}}) {
            board.setFirmwareVersion(u"1,SW1.4.0"_s); // what was true must not stay so
            if (firmware.startsWith(u'S') || firmware.contains("10"_L1)) {
                expectCritical("Unable to identify Ranger firmware version and detect LoRa connectivity status");
            }
            board.setFirmwareVersion(firmware);
            QVERIFY2(board.loraStackIntegrated() == hasLora, qPrintable(firmware));
        }
        QCOMPARE(changed.count(), 14);
    }
};

QTEST_GUILESS_MAIN(TestBoards)
#include "tst_boards.moc"
