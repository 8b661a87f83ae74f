// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Command.h"

/// Who the device is, made from the seed: the same seed is the same device.
struct SimIdentity
{
    explicit SimIdentity(quint32 seed);

    QString id;                ///< eight hexadecimal digits, in lower case as the device sends them
    QString address;           ///< seven hexadecimal digits, in lower case
    QString serialNumber;      ///< "ZEP" and eleven digits
    QStringList loraDeviceEui; ///< eight bytes in hexadecimal
    QStringList loraAppEui;    ///< eight bytes
    QStringList loraAppKey;    ///< sixteen bytes

    /// The commands that tell the identity. \a firmware is read at each query; both must outlive the commands.
    [[nodiscard]] std::vector<Command> commands(const QString &firmware) const;
};

/// The firmware text that a board leaves the factory with.
[[nodiscard]] QString factoryFirmware(Board board);
