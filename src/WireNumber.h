// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/// \a value as a parameter of a command: six significant digits, trailing zeros left out, and never an exponent, which
/// no command takes. A value that is not finite is
/// replaced by finiteNumber().
[[nodiscard]] QString wireNumber(double value);

/// The finite number nearest to \a value; 0 if it is not a number.
[[nodiscard]] double finiteNumber(double value);
