// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// A table of passes: read, imported, and followed by a sequence.

#include <QBuffer>
#include <QDir>

#include "FuzzTarget.h"
#include "Logger.h"
#include "PrepassModel.h"
#include "TxManager.h"

namespace {

void readTable(const QByteArray &input)
{
    QByteArray bytes = input;
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    const QDateTime now = QDateTime::currentDateTimeUtc();
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
    QString sent;
    Logger logger;
    TxManager tx(
        &logger,
        [&sent](const QString &data, const Payload::Options &, bool) {
            sent = data;
            return true;
        },
        [](const Payload::Options &) {});
    tx.addPayloadItem("00AA11BB");
    tx.addPayloadItem("C0FFEE00");
    tx.setSelectedProfile(TxManager::PREPASS);
    tx.importPrepassData(path);
    tx.start(2);
    Fuzz::runSequence(tx, 30, [&] { tx.onTxDone(sent); });
    tx.setCustomUtcTime("2026-01-08T09:59:00Z"); // reads the table again
    Fuzz::runSequence(tx, 30, [&] { tx.onTxDone(sent); });
    tx.stop();
    tx.clearPrepassData();
    Fuzz::runSequence(tx, 1, [&] { tx.onTxDone(sent); });
}

} // namespace

void fuzzOne(const QByteArray &input)
{
    readTable(input);
    followTable(input);
}
