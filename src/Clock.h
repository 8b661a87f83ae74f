// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>

#include <chrono>

/// Where the program reads the time of day from. Timers do not come from here: they belong to the event loop.
///
/// The clock of the computer is in force unless another one has been installed, which a test does to let hours pass in
/// a moment.
class Clock
{
public:
    Clock() = default;
    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;
    virtual ~Clock() = default;

    /// The date and time in UTC, to the millisecond. It can step in either direction.
    [[nodiscard]] virtual QDateTime utcNow() const;
    /// Blocks the thread; no event is processed meanwhile.
    virtual void sleep(std::chrono::milliseconds duration);

    /// The clock in force; never null.
    [[nodiscard]] static Clock *current();
    /// Puts \a clock in force, which is not owned; null brings the clock of the computer back.
    static void install(Clock *clock);
};
