// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

/// The serial parameters that a board demands, in the numbers of QSerialPort's enumerations.
struct PortSettings
{
    qint32 baudRate = 9600; ///< in bauds, for both directions
    qint32 dataBits = 8;
    qint32 parity = 0;      ///< none
    qint32 stopBits = 1;    ///< one
    qint32 flowControl = 0; ///< none
};
