// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DiskSync.h"
#include "SerialLine.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
QString nodeOf(const QString &portName)
{
    return portName.startsWith(QLatin1Char('/')) ? portName : QStringLiteral("/dev/") + portName;
}

QString programOf(const QString &process)
{
    QFile file(QStringLiteral("/proc/%1/comm").arg(process));
    return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll().trimmed()) : QString();
}

/// The program that has the node open. Those of other users show nothing but their names, which is enough for the one
/// that is known to take any port.
void findHolder(const QString &node, PortRefusal &refusal)
{
    const QString target = QFileInfo(node).canonicalFilePath();
    const QString own = QString::number(getpid());
    const QStringList processes = QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    for (const QString &process : processes) {
        const QDir files(QStringLiteral("/proc/%1/fd").arg(process));
        const QStringList descriptors = process == own ? QStringList() : files.entryList(QDir::Files | QDir::System);
        for (const QString &descriptor : descriptors) {
            if (QFile::symLinkTarget(files.filePath(descriptor)) == target) {
                refusal.holder = programOf(process);
                refusal.holderId = process.toLongLong();
                return;
            }
        }
        if (refusal.holder.isEmpty() && programOf(process) == QLatin1String("ModemManager")) {
            refusal.holder = QStringLiteral("ModemManager");
        }
    }
}
} // namespace

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
    if (access(QFile::encodeName(nodeOf(portName)).constData(), R_OK | W_OK) == 0) {
        return {};
    }
    return QString::fromLocal8Bit(std::strerror(errno));
}

PortRefusal serialPortRefusal(const QSerialPort &port)
{
    PortRefusal refusal;
    const QString node = nodeOf(port.portName());
    struct stat status
    {
    };
    if (stat(QFile::encodeName(node).constData(), &status) != 0) {
        refusal.reason = PortRefusal::Gone;
    } else if (access(QFile::encodeName(node).constData(), R_OK | W_OK) != 0) {
        refusal.reason = PortRefusal::Forbidden;
        const group *owner = getgrgid(status.st_gid);
        const passwd *user = getpwuid(geteuid());
        refusal.group = owner != nullptr ? QString::fromLocal8Bit(owner->gr_name) : QString::number(status.st_gid);
        refusal.user = user != nullptr ? QString::fromLocal8Bit(user->pw_name) : QString::number(geteuid());
    } else if (port.error() == QSerialPort::PermissionError || port.error() == QSerialPort::OpenError) {
        refusal.reason = PortRefusal::Busy;
        findHolder(node, refusal);
    }
    return refusal;
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
