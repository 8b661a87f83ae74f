// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Fleet.h"

#include <QByteArray>

/// How the operator's web service answers.
enum class BulletinMode { Ok, Status500, Empty, Broken, Errors, UnknownStatus, NoIdent, Silent };

/// The JSON text of a document in which all bulletins are fresh at \a now, with the fault of \a mode in it if the
/// fault is one of the text. The faults of single satellites are those of the second.
[[nodiscard]] QByteArray bulletinDocument(const std::vector<FleetSatellite> &satellites, const QDateTime &now,
                                          BulletinMode mode = BulletinMode::Ok);
