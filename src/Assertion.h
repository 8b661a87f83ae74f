// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

/// Ends the process when \a condition does not hold, in every build type: it guards what the interface cannot
/// produce. \a text is the reason, \a source the class as "src/TxManager"; both are string literals. Prints
/// `condition && "text"` with the source on the process log and aborts.
#define ZEPGUI_ASSERT(condition, text, source)                                                                         \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            qFatal("ASSERT failure in %s: %s && \"%s\"", source, #condition, text);                                    \
        }                                                                                                              \
    } while (false)
