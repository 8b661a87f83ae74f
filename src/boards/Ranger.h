// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZepBoard.h"

/// The sensor device. It is configured rather than driven, and sleeps until its button is pressed.
class Ranger : public ZepBoard
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    /// \a baudRate is in bauds.
    Ranger(QObject *parent, quint32 baudRate);

    /// Also finds out whether this firmware has the LoRa stack.
    void setFirmwareVersion(const QString &firmwareVersion) override;

private:
    [[nodiscard]] bool firmwareHasLoRa() const;
};
