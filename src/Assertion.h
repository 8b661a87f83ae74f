// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <functional>

/// Ends the process when \a condition does not hold, in every build type: it guards what the interface cannot
/// produce. \a text is the reason, \a source the class as "src/TxManager"; both are string literals. Calls the function
/// of setAssertionHook(), prints `condition && "text"` with the source on the process log and aborts.
#define ZEPGUI_ASSERT(condition, text, source)                                                                         \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            failAssertion(source, #condition, text);                                                                   \
        }                                                                                                              \
    } while (false)

/// What the macro does when the condition does not hold.
[[noreturn]] void failAssertion(const char *source, const char *condition, const char *text);

/// Sets the function that saves what can be saved when an assertion fails; its argument is the line that the process
/// log gets. It is called once, inside the code that failed: it must not start an event loop. Main thread only.
void setAssertionHook(std::function<void(const QByteArray &reason)> hook);
