// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PortHelp.h"

#include <QSerialPort>

/// Whether the far end of an open \a port is gone, asked of the operating system: QSerialPort itself tells it by
/// luck only. False for a closed port, and where the system has no such question.
[[nodiscard]] bool serialLineHungUp(const QSerialPort &port);

/// Why the system would not open \a portName, in its own words ("Permission denied", ...), for the process log;
/// QSerialPort has one error for both "busy" and "no rights". Empty where the system has nothing to add.
[[nodiscard]] QString serialLineOpenProblem(const QString &portName);

/// The reason of a failed open() of \a port, for portHelp(). Looks through the processes for the one that has the port,
/// which takes some milliseconds.
[[nodiscard]] PortRefusal serialPortRefusal(const QSerialPort &port);
