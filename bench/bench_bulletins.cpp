// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// loadAopJson() of a document with so many satellites, all new or all known, against the floor: the parsing of its
// JSON alone.

#include "SatelliteAopModel.h"

#include <QJsonDocument>

#include <benchmark/benchmark.h>

namespace {
constexpr char16_t firstIdent = 0x4E00; // letters without case enough for any number of satellites

QByteArray document(qint64 satellites)
{
    QString text = QStringLiteral(R"({"creationDate": "2026-01-07_10:00:00", "satellitesInformation": [)");
    for (qint64 i = 0; i < satellites; ++i) {
        text += QStringLiteral(R"(%1{"satellite": "Satellite %2", "broadcastedStatus": {"fleetfeedIdent": "%3",
            "downlinkStatus": "HELIO-4 TX ON", "operatingStatus": "HELIO-4 payload"}, "aop": {
            "date": "2026-01-06_22:58:17", "semiMajorAxis": 7195.654, "semiMajorAxisDrift": -1.97, "inclination": 98.71,
            "ascendantNodeLongitude": 344.178, "ascendantNodeDrift": -25.34, "orbitalPeriod": 101.359}})")
                    .arg(i == 0 ? QString() : QStringLiteral(","))
                    .arg(i)
                    .arg(QChar(static_cast<char16_t>(firstIdent + i)));
    }
    return (text + QStringLiteral("]}")).toUtf8();
}

void json(benchmark::State &state)
{
    const QByteArray data = document(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(QJsonDocument::fromJson(data));
    }
}

void load(benchmark::State &state, SatelliteAopModel &model, const QByteArray &data)
{
    if (!model.loadAopJson(data) || model.rowCount() != state.range(0)) {
        state.SkipWithError("the document was not taken");
    }
}

void loadNew(benchmark::State &state)
{
    const QByteArray data = document(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        SatelliteAopModel model;
        load(state, model, data);
    }
}

void loadKnown(benchmark::State &state)
{
    const QByteArray data = document(state.range(0));
    SatelliteAopModel model;
    load(state, model, data);
    for ([[maybe_unused]] auto _ : state) {
        load(state, model, data);
    }
}
} // namespace

BENCHMARK(json)->Arg(25)->Arg(250)->Arg(2500)->Arg(20000);
BENCHMARK(loadNew)->Arg(25)->Arg(250)->Arg(2500)->Arg(20000);
BENCHMARK(loadKnown)->Arg(25)->Arg(250)->Arg(2500)->Arg(20000);
BENCHMARK_MAIN();
