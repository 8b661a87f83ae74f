// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The wire: one command and its answer, and 100,000 lines poured in, each against a bare QSerialPort.

#include "Identity.h"
#include "WireThread.h"
#include "ZepManager.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QSerialPort>
#include <QThread>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {
constexpr int pouredLines = 100'000;

QString pathOf(const WireThread &wire)
{
    return QString::fromLatin1(wire.path());
}

void openBare(QSerialPort &port, const WireThread &wire, benchmark::State &state)
{
    port.setPortName(pathOf(wire));
    if (!port.open(QIODevice::ReadWrite)) {
        state.SkipWithError("the pseudo terminal does not open");
    }
}
} // namespace

static void bareCommand(benchmark::State &state)
{
    WireThread wire;
    QSerialPort port;
    openBare(port, wire, state);
    for ([[maybe_unused]] auto _ : state) {
        // As long as the program pauses: after it a computer takes a while to wake up, milliseconds on some.
        QThread::msleep(10);
        port.write("AT+PWR=?\r\n");
        while (!port.canReadLine()) {
            QCoreApplication::processEvents();
        }
        benchmark::DoNotOptimize(port.readLine());
    }
}
BENCHMARK(bareCommand)->Iterations(100)->Repetitions(5)->ReportAggregatesOnly()->UseRealTime();

// cppcheck-suppress constParameterCallback ; a state that counts is never const
static void command(benchmark::State &state)
{
    WireThread wire;
    ZepManager manager(nullptr);
    manager.connect(ZepBoard::ZEP1, pathOf(wire), u"Default"_s);
    for ([[maybe_unused]] auto _ : state) {
        manager.getTxPower();
    }
}
BENCHMARK(command)->Iterations(100)->Repetitions(5)->ReportAggregatesOnly()->UseRealTime();

static void barePour(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        WireThread wire;
        QSerialPort port;
        openBare(port, wire, state);
        int lines = 0;
        QObject::connect(&port, &QSerialPort::readyRead, [&] {
            while (port.canReadLine()) {
                benchmark::DoNotOptimize(port.readLine());
                ++lines;
            }
        });
        wire.pour(pouredLines);
        while (lines < pouredLines) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * pouredLines);
}
BENCHMARK(barePour)->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);

static void pour(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        WireThread wire;
        ZepManager manager(nullptr);
        manager.connect(ZepBoard::ZEP1, pathOf(wire), u"Default"_s);
        int lines = 0;
        bool inOrder = true;
        QObject::connect(manager.logger(), &Logger::logCreated, [&](const QString &line) {
            inOrder = inOrder && line.contains("line "_L1 + QString::number(lines) + u' ');
            ++lines;
        });
        wire.pour(pouredLines);
        while (lines < pouredLines) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        if (!inOrder) {
            state.SkipWithError("lines were lost or came out of order");
        }
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * pouredLines);
}
BENCHMARK(pour)->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(Identity::organization);
    QCoreApplication::setApplicationName(u"ZepGUI bench"_s);
    QLoggingCategory::setFilterRules(u"*=false"_s);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
