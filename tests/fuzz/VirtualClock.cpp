// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The C library's calls for time and sleep, in the executable, stand before those of the library itself.

#include "VirtualClock.h"

#include <cstdint>
#include <ctime>

#include <link.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <QByteArray>
#include <QDateTime>

namespace {

constexpr qint64 epoch = 1767780000000; // ms: 2026-01-07T10:00:00Z
constexpr qint64 millisecondsPerSecond = 1000;
constexpr qint64 nanosecondsPerMillisecond = 1000000;
constexpr qint64 microsecondsPerMillisecond = 1000;

bool running = false;
qint64 now = epoch; // ms
std::uintptr_t firstOfQt = 0;
std::uintptr_t lastOfQt = 0;

int findQt(dl_phdr_info *info, std::size_t, void *)
{
    if (!QByteArray(info->dlpi_name).contains("libQt6Core")) {
        return 0;
    }
    for (int index = 0; index < info->dlpi_phnum; ++index) {
        const auto &segment = info->dlpi_phdr[index];
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
            firstOfQt = info->dlpi_addr + segment.p_vaddr;
            lastOfQt = firstOfQt + segment.p_memsz;
        }
    }
    return 1;
}

bool isVirtualFor(const void *caller)
{
    const auto address = reinterpret_cast<std::uintptr_t>(caller);
    return running && address >= firstOfQt && address < lastOfQt;
}

} // namespace

void VirtualClock::begin()
{
    if (lastOfQt == 0) {
        dl_iterate_phdr(findQt, nullptr);
    }
    now = epoch;
    running = true;
    if (QDateTime::currentMSecsSinceEpoch() != epoch) {
        qFatal("Qt does not see the virtual clock");
    }
}

void VirtualClock::end()
{
    running = false;
}

void VirtualClock::advance(qint64 milliseconds)
{
    now += milliseconds;
}

extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (!isVirtualFor(__builtin_return_address(0))) {
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    }
    time->tv_sec = now / millisecondsPerSecond;
    time->tv_nsec = now % millisecondsPerSecond * nanosecondsPerMillisecond;
    return 0;
}

extern "C" int nanosleep(const timespec *wanted, timespec *left)
{
    if (!isVirtualFor(__builtin_return_address(0))) {
        return static_cast<int>(syscall(SYS_nanosleep, wanted, left));
    }
    now += wanted->tv_sec * millisecondsPerSecond + wanted->tv_nsec / nanosecondsPerMillisecond;
    return 0;
}

extern "C" int gettimeofday(timeval *time, void *zone) noexcept
{
    if (!isVirtualFor(__builtin_return_address(0))) {
        return static_cast<int>(syscall(SYS_gettimeofday, time, zone));
    }
    time->tv_sec = now / millisecondsPerSecond;
    time->tv_usec = now % millisecondsPerSecond * microsecondsPerMillisecond;
    return 0;
}
