// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZepBoard.h"

/// The reference-design board: a Zep2 that receives nothing.
class TBX : public ZepBoard
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    /// \a baudRate is in bauds.
    TBX(QObject *parent, quint32 baudRate);
};
