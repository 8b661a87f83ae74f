// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/// Why a port could not be opened, as far as the operating system tells.
struct PortRefusal
{
    enum Reason {
        Unknown,
        Gone,      ///< there is no such port now
        Forbidden, ///< the user may not use it
        Busy,      ///< another program has it
    };
    Reason reason = Unknown;
    QString group;       ///< Forbidden: the group that owns the port; empty where the system has none
    QString user;        ///< Forbidden: the name of the user
    QString holder;      ///< Busy: the name of the program that has the port; empty where the system does not tell
    qint64 holderId = 0; ///< Busy: its process, if it is known to have the port; 0 if it only may
};

/// What the user can do about it, in one sentence or several lines. Empty for an unknown reason.
[[nodiscard]] QString portHelp(const PortRefusal &refusal);
