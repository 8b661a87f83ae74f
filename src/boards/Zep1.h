// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZepBoard.h"

/// The module with the smallest command set: it has no prediction, and sets its frequency and power itself.
class Zep1 : public ZepBoard
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    /// \a baudRate is in bauds.
    Zep1(QObject *parent, quint32 baudRate);
};
