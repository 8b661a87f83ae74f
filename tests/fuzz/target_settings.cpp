// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The store of the user's settings: read, used for a sequence, written, and read again.

#include "FuzzTarget.h"
#include "PayloadModel.h"
#include "PeriodicProfile.h"
#include "PrepassProfile.h"

#include <QDebug>

namespace {

/// All that a store keeps, but for the path of the pass table.
QString kept(const TxManager &tx)
{
    QString text;
    QDebug out(&text);
    const PeriodicProfile *periodic = tx.periodicProfile();
    const PrepassProfile *prepass = tx.prepassProfile();
    out << tx.selectedProfile() << periodic->period() << periodic->redundancy() << periodic->delay()
        << prepass->position().latitude << prepass->position().longitude << prepass->config().predictionDuration
        << prepass->config().minElevation << prepass->config().minPassDuration << prepass->redundancy();
    for (int row = 0; row < tx.payloadListModel()->rowCount(); ++row) {
        // Half of a character does not survive the store.
        out << tx.payloadListModel()->getMessage(static_cast<uchar>(row)).toUtf8();
    }
    return text;
}

} // namespace

void fuzzOne(const QByteArray &input)
{
    Fuzz::write(Fuzz::settingsFile(), input);
    QString before;
    {
        Fuzz::Bench first;
        Fuzz::readAll(&first.tx);
        before = kept(first.tx);
        first.tx.saveSettings();
        if (first.tx.payloadListModel()->rowCount() > 0) { // as the views ask for
            first.tx.start(2);
            first.run(20);
            first.tx.stop();
        }
    }
    const Fuzz::Bench second;
    Fuzz::require(kept(second.tx) == before, "the settings that were saved are not those that were read");
}
