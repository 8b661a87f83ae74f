// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DiskSync.h"
#include "SerialLine.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

bool serialLineHungUp(const QSerialPort &port)
{
    if (!port.isOpen()) {
        return false;
    }
    pollfd descriptor{port.handle(), 0, 0};
    return poll(&descriptor, 1, 0) > 0 && (descriptor.revents & (POLLHUP | POLLNVAL)) != 0;
}

QString serialLineOpenProblem(const QString &portName)
{
    const QString node = portName.startsWith(QLatin1Char('/')) ? portName : QStringLiteral("/dev/") + portName;
    if (access(QFile::encodeName(node).constData(), R_OK | W_OK) == 0) {
        return {};
    }
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool syncToDisk(const QString &path)
{
    const int handle = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (handle < 0) {
        return false;
    }
    const bool isSynced = fsync(handle) == 0;
    close(handle);
    return isSynced;
}
