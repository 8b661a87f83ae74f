// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// A table of passes: read, imported, and followed by a sequence.

#include <QBuffer>
#include <QDir>

#include "FuzzTarget.h"
#include "PrepassModel.h"

namespace {

void readTable(const QByteArray &input)
{
    QByteArray bytes = input;
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    const QDateTime now = Fuzz::time().utcNow();
    PrepassModel model;
    const bool accepted = model.loadFromCsv(file, now);
    for (qulonglong row = 0; accepted && row < static_cast<qulonglong>(model.rowCount()); ++row) {
        Fuzz::require(row == 0 || model.getStartUtc(row - 1) <= model.getStartUtc(row), "the passes are not sorted");
        Fuzz::require(model.getEndUtc(row) > now, "a pass that is over was kept");
    }
    Fuzz::readAll(&model);
}

void followTable(const QByteArray &input)
{
    const QString path = QDir::current().filePath("passes.csv");
    Fuzz::write(path, input);
    Fuzz::Bench bench;
    TxManager &tx = bench.tx;
    tx.addPayloadItem("00AA11BB");
    tx.addPayloadItem("C0FFEE00");
    tx.setSelectedProfile(TxManager::PREPASS);
    tx.importPrepassData(path);
    tx.start(2);
    bench.run(30);
    tx.setCustomUtcTime("2026-01-08T09:59:00Z"); // reads the table again
    bench.run(30);
    tx.stop();
    tx.clearPrepassData();
    bench.run(1);
}

} // namespace

void fuzzOne(const QByteArray &input)
{
    readTable(input);
    followTable(input);
}
