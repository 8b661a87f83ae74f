// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Assertion.h"

#include <utility>

namespace {
std::function<void(const QByteArray &reason)> assertionHook;
}

void setAssertionHook(std::function<void(const QByteArray &reason)> hook)
{
    assertionHook = std::move(hook);
}

void failAssertion(const char *source, const char *condition, const char *text)
{
    const QByteArray reason = QByteArray("ASSERT failure in ") + source + ": " + condition + " && \"" + text + '"';
    // An assertion inside the hook does not call it again.
    if (const auto hook = std::exchange(assertionHook, nullptr)) {
        hook(reason);
    }
    qFatal("%s", reason.constData());
}
