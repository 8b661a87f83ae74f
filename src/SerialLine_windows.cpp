// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SerialLine.h"

// Windows reports a pulled adapter as a ResourceError, and the reason of a failed open by QSerialPort itself.

bool serialLineHungUp(const QSerialPort &)
{
    return false;
}

QString serialLineOpenProblem(const QString &)
{
    return {};
}
