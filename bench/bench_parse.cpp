// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// parseMessage() for one line of each kind of pattern, against the floor: the bare match of the line's expression,
// compiled once as it is there, and the compile-and-match of the data's expression.

#include "AtCmdHandler.h"
#include "Ranger.h"
#include "Zep1.h"
#include "Zep2.h"

#include <QMetaEnum>

#include <benchmark/benchmark.h>

#include <array>
#include <string>

using namespace Qt::StringLiterals;

namespace {
struct Line
{
    const char *kind;
    ZepBoard *board;
    AtCmdHandler::CmdId id;
    const char *data;
};

// cppcheck-suppress constParameterCallback ; a state that counts is never const
void floorOf(benchmark::State &state, const Line &line)
{
    const QRegularExpression lineRegex(uR"(^\+(?<CMD>[A-Z_]+)(=|:)?(?<DATA>.+)?$)"_s);
    const QString pattern = line.board->regexMap().value(line.id);
    const QString word = QString::fromLatin1(QMetaEnum::fromType<AtCmdHandler::CmdId>().valueToKey(line.id));
    const QString text = u'+' + word + u'=' + QString::fromLatin1(line.data);
    const QString data = QString::fromLatin1(line.data);
    for ([[maybe_unused]] auto _ : state) {
        const QRegularExpressionMatch lineMatch = lineRegex.match(text);
        benchmark::DoNotOptimize(lineMatch.hasMatch());
        const QRegularExpressionMatch dataMatch = QRegularExpression(pattern).match(data);
        benchmark::DoNotOptimize(dataMatch.hasMatch());
    }
}

void parse(benchmark::State &state, const Line &line)
{
    AtCmdHandler codec(nullptr, line.board->regexMap());
    const QString word = QString::fromLatin1(QMetaEnum::fromType<AtCmdHandler::CmdId>().valueToKey(line.id));
    const QString text = u'+' + word + u'=' + QString::fromLatin1(line.data);
    for ([[maybe_unused]] auto _ : state) {
        if (!codec.parseMessage(text, false)) {
            state.SkipWithError("the line was not understood");
            break;
        }
    }
}
} // namespace

int main(int argc, char **argv)
{
    Zep1 zep1(nullptr, 9600);
    Zep2 zep2(nullptr, 9600);
    Ranger ranger(nullptr, 115200);
    const std::array lines{
        Line{"nothing", &zep2, AtCmdHandler::OK, ""},
        Line{"no_pattern", &zep2, AtCmdHandler::SN, "ZEP12345678901"},
        Line{"number", &zep1, AtCmdHandler::ERROR, "22"},
        Line{"hex", &zep2, AtCmdHandler::ID, "0A1B2C3D4E5F"},
        Line{"text", &zep2, AtCmdHandler::FW, "1,SW4.2.0"},
        Line{"choices", &zep1, AtCmdHandler::AFMT, "1,16,32"},
        Line{"status_and_data", &zep2, AtCmdHandler::TX, "0,00112233445566778899AABBCCDDEEFF"},
        Line{"listing", &zep2, AtCmdHandler::TXFIFO, "1,00112233445566778899,0x1F"},
        Line{"end_of_listing", &zep2, AtCmdHandler::AOP, "end"},
        Line{"numbers", &zep2, AtCmdHandler::RCONF, "399910000,401690000,27,HRZ"},
        Line{"date", &zep2, AtCmdHandler::UDATE, "2026-1-2T3:4:5Z"},
        Line{"dates", &zep2, AtCmdHandler::PREPASS_CFG, "43.5,1.48,2026-1-2T3:4:5Z,2026-1-3T3:4:5Z,5,90,5,3,5,30"},
        Line{"bulletin", &zep2, AtCmdHandler::AOP,
             "A,2026-1-2T3:4:5Z,7195.654,98.7075,344.178,-25.34,101.3592,-1.97,blacklisted"},
        Line{"flags", &ranger, AtCmdHandler::PACQ_SENS, "1,0,1,0,1,0,1"},
        Line{"bytes", &ranger, AtCmdHandler::LORA_AKEY, "00,11,22,33,44,55,66,77,88,99,AA,BB,CC,DD,EE,FF"},
    };
    for (const Line &line : lines) {
        benchmark::RegisterBenchmark((std::string("floor/") + line.kind).c_str(), floorOf, line);
        benchmark::RegisterBenchmark((std::string("parse/") + line.kind).c_str(), parse, line);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
