// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// A document of bulletins, as the web service sends it.

#include "FuzzTarget.h"
#include "SatelliteAopModel.h"

void fuzzOne(const QByteArray &input)
{
    SatelliteAopModel model;
    const bool accepted = model.loadAopJson(input);
    const int rows = model.rowCount();
    Fuzz::require(accepted || rows == 0, "a refused document has left satellites");

    for (const SatelliteAop *satellite : model.satellites()) {
        Fuzz::require(satellite->ident.toUpper() == satellite->ident &&
                          model.findByIdent(satellite->ident) == satellite,
                      "a satellite is not found by its ident");
        Fuzz::require(satellite->aopAtParameters().size() == 8 && satellite->statusAtParameters().size() == 3,
                      "a bulletin has not the fields of its command");
        Q_UNUSED(model.getDownlinkCapability(satellite->satelliteName))
    }
    Fuzz::readAll(&model);

    Fuzz::require(model.loadAopJson(input) == accepted && model.rowCount() == rows,
                  "the same document again has changed the list");
}
