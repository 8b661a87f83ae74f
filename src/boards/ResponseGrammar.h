// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

// What is accepted from a device, and from a configuration file: the patterns of the data behind a command word.
// Nothing else checks the syntax of a value; a text such as "--" passes here and then reads as the number 0.
//
// A pattern holds one group that bears the command's name, its whole data, and numbered groups for the fields.
// AtCmdHandler hands the first on as parameter 0 and the groups from number 2 on as parameter 1 and up.

// Pieces.
extern const QString AT_RE_BOOL;      ///< a flag; "|" passes too and counts as 0
extern const QString AT_RE_DECIMAL;   ///< a number with a point
extern const QString AT_RE_INTEGER;   ///< a number of either sign
extern const QString AT_RE_HEX_DIGIT; ///< one digit, to be quantified
extern const QString AT_RE_DATE;      ///< a UTC date and time, read by the format "yyyy-M-dTH:m:sZ"

// Patterns of more than one board.
extern const QString AT_RE_CMD_OK;
extern const QString AT_RE_CMD_ERROR;
extern const QString AT_RE_CMD_ID;
extern const QString AT_RE_CMD_ADDR;
extern const QString AT_RE_CMD_FW;
extern const QString AT_RE_CMD_TX; ///< any status, data in hexadecimal
extern const QString AT_RE_CMD_PREPASS_EN;
extern const QString AT_RE_CMD_PREPASS_CFG;
extern const QString AT_RE_CMD_POS;
extern const QString AT_RE_CMD_AOP;
extern const QString AT_RE_CMD_SAT;
extern const QString AT_RE_CMD_UDATE;
extern const QString AT_RE_CMD_NEXTPASS;
extern const QString AT_RE_CMD_TXFIFO;
extern const QString AT_RE_CMD_ATXRP;
extern const QString AT_RE_CMD_ASSERT;
extern const QString AT_RE_CMD_RCONF;

/// \a count copies of \a piece, each a capturing group, joined by commas: "(x),(x),(x)".
[[nodiscard]] QString repeatGroups(int count, const QString &piece);
