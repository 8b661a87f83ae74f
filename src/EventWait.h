// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <functional>

/// Waiting inside a call while the event loop goes on. The thread sleeps between two events. The user's input is held
/// back until the outermost wait has returned; everything else is processed.
namespace EventWait {

/// Waits until \a isOver, which is asked at once and after each batch of events.
void until(const std::function<bool()> &isOver);
/// As above, but for \a limit at the most, to the millisecond.
void until(const std::function<bool()> &isOver, std::chrono::milliseconds limit);

/// Whether the input event that is being processed may have been made during a wait: true in a wait, and after it
/// until the input that was held back has been delivered. A control whose meaning changes during a wait ignores such
/// an event.
[[nodiscard]] bool isInputHeld();

} // namespace EventWait
