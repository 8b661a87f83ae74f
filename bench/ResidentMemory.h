// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFile>

#include <unistd.h>

/// The resident memory of the process in KiB, 0 if the system does not say.
inline qint64 residentKib()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    const bool opened = statm.open(QIODevice::ReadOnly);
    const qint64 pages = opened ? statm.readAll().split(' ').value(1).toLongLong() : 0;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}
