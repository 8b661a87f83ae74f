// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Options.h"
#include "PassTable.h"
#include "ProcessEvents.h"
#include "SimDevice.h"
#include "Simulator.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

void print(FILE *stream, const QString &text)
{
    std::fputs(qPrintable(text + u'\n'), stream);
    std::fflush(stream);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const SimOptionsResult result = readOptions(QCoreApplication::arguments());
    if (!result.options) {
        print(result.exitCode == 0 ? stdout : stderr, result.message);
        return result.exitCode;
    }

    if (result.options->passTable) {
        const PassCriteria criteria = SimDevice(*result.options).prediction().criteria();
        const QByteArray table = passTable(fleet(result.options->seed), criteria, *result.options->passTable);
        return std::fwrite(table.constData(), 1, size_t(table.size()), stdout) == size_t(table.size()) ? 0 : 1;
    }

    // Before the link exists: from then on a signal must find someone who removes it.
    const TerminationSignals terminationSignals;
    Simulator simulator(*result.options);
    QObject::connect(&terminationSignals, &TerminationSignals::terminated, &application, &QCoreApplication::quit);
    QObject::connect(&simulator, &Simulator::quitRequested, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    QObject::connect(&simulator, &Simulator::plugged, &simulator, [](const QString &path) { print(stdout, path); });
    if (!simulator.start()) {
        print(stderr, simulator.errorString());
        return 1;
    }
    if (!simulator.bulletinUrl().isEmpty()) {
        print(stdout, QStringLiteral("bulletins: ") + simulator.bulletinUrl());
    }
    StandardInput input;
    QObject::connect(&input, &StandardInput::lineRead, &simulator,
                     [&simulator](const QString &line) { print(stdout, simulator.execute(line)); });
    return QCoreApplication::exec();
}
