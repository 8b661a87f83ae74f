// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZepBoard.h"

/// The module with prediction, a transmission queue and a radio that also receives.
class Zep2 : public ZepBoard
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    /// \a baudRate is in bauds.
    Zep2(QObject *parent, quint32 baudRate);
};
