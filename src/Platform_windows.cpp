// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DiskSync.h"
#include "SerialLine.h"

#include <QFileInfo>

#include <qt_windows.h>

// QSerialPort itself gives the reason of a failed open, and SerialPortManager finds a pulled adapter by other means.

bool serialLineHungUp(const QSerialPort &)
{
    return false;
}

QString serialLineOpenProblem(const QString &)
{
    return {};
}

PortRefusal serialPortRefusal(const QSerialPort &port)
{
    PortRefusal refusal;
    if (port.error() == QSerialPort::DeviceNotFoundError) {
        refusal.reason = PortRefusal::Gone;
    } else if (port.error() == QSerialPort::PermissionError) {
        refusal.reason = PortRefusal::Busy; // a port has no owner there, and the system does not name the program
    }
    return refusal;
}

bool syncToDisk(const QString &path)
{
    if (QFileInfo(path).isDir()) {
        return true; // the file system takes care of its folders
    }
    const HANDLE handle = CreateFileW(path.toStdWString().c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    const bool isSynced = FlushFileBuffers(handle) != 0;
    CloseHandle(handle);
    return isSynced;
}
