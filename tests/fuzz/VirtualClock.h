// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

/// The clock that Qt sees while an input is worked on: it starts at the same moment for every input and stands still
/// unless it is moved. So a timer of minutes costs nothing, and an input that crashed the program today crashes it in
/// ten years. Whoever is not Qt, the fuzzing engine above all, sees the true clock. Linux only.
namespace VirtualClock {
void begin(); ///< 2026-01-07T10:00:00Z
void end();
void advance(qint64 milliseconds);
} // namespace VirtualClock
