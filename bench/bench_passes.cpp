// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The import of a pass table against the floor: the same lines split and their dates parsed, with no model. And the
// tick of the clock with a long table.

#include "Logger.h"
#include "PrepassModel.h"
#include "TxManager.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 span = qint64{30} * 86400; // s that the passes spread over

/// A table of \a rows passes in no order, of which the first \a begun are in progress at \a now.
QByteArray table(qint64 rows, qint64 begun, const QDateTime &now)
{
    QByteArray text = "Satellite,Start date/time,Middle date/time,End date/time,Duration,Middle elevation,Start "
                      "azimuth,Middle azimuth,End azimuth\n";
    for (qint64 row = 0; row < rows; ++row) {
        const qint64 offset = row < begun ? -row - 1 : 60 + row * 7919 * 7919 % span;
        const QString date = now.addSecs(offset).toString(u"MM-dd-yyyy hh:mm:ss"_s);
        text += u"SAT-%1,%2,%2,%2,12:34:56,%3.25,10.5,180.25,350.75\n"_s.arg(row % 25).arg(date).arg(row % 90).toUtf8();
    }
    return text;
}

void floorOf(benchmark::State &state)
{
    QByteArray text = table(state.range(0), 0, QDateTime::currentDateTimeUtc());
    for ([[maybe_unused]] auto _ : state) {
        QBuffer file(&text);
        file.open(QIODevice::ReadOnly | QIODevice::Text);
        file.readLine();
        while (!file.atEnd()) {
            const QStringList fields = QString::fromUtf8(file.readLine().trimmed()).split(u',');
            benchmark::DoNotOptimize(QDateTime::fromString(fields.at(1), u"MM-dd-yyyy hh:mm:ss"_s).isValid());
            benchmark::DoNotOptimize(QTime::fromString(fields.at(4), u"hh:mm:ss"_s).isValid());
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void import(benchmark::State &state)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QByteArray text = table(state.range(0), 0, now);
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        auto model = std::make_unique<PrepassModel>();
        QBuffer file(&text);
        file.open(QIODevice::ReadOnly | QIODevice::Text);
        state.ResumeTiming();
        if (!model->loadFromCsv(file, now) || model->rowCount() != state.range(0)) {
            state.SkipWithError("the table was not taken whole");
            break;
        }
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void tick(benchmark::State &state)
{
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    QDir::setCurrent(folder.path());
    QFile file(folder.filePath(u"passes.csv"_s));
    file.open(QIODevice::WriteOnly);
    file.write(table(state.range(0), state.range(1), QDateTime::currentDateTimeUtc()));
    file.close();

    Logger logger;
    TxManager manager(&logger, nullptr, nullptr);
    manager.setSelectedProfile(TxManager::PREPASS);
    manager.importPrepassData(file.fileName());
    const auto walk = [&manager] { QMetaObject::invokeMethod(&manager, "onUtcTimeRefreshOver"); };
    for (qint64 pass = 0; pass < state.range(1); ++pass) {
        walk(); // a tick takes in one pass that has begun
    }
    for ([[maybe_unused]] auto _ : state) {
        walk();
    }
    if (manager.nextPassIdx() != static_cast<qulonglong>(state.range(1))) {
        state.SkipWithError("the table was not in the state to be measured");
    }
}
} // namespace

BENCHMARK(floorOf)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);
BENCHMARK(import)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);
BENCHMARK(tick)->Args({10000, 0})->Args({10000, 10})->Args({10000, 200})->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(u"zepgui-bench"_s);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
