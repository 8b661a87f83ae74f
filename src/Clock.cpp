// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Clock.h"

#include <QThread>

namespace {
Clock *installed = nullptr;
}

QDateTime Clock::utcNow() const
{
    return QDateTime::currentDateTimeUtc();
}

void Clock::sleep(std::chrono::milliseconds duration)
{
    QThread::msleep(static_cast<unsigned long>(duration.count()));
}

Clock *Clock::current()
{
    static Clock ofTheComputer;
    return installed != nullptr ? installed : &ofTheComputer;
}

void Clock::install(Clock *clock)
{
    installed = clock;
}
