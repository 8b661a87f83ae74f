// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>

/// A port of the operating system's list, with what its adapter says of itself.
struct ListedPort
{
    QString name;         ///< "ttyUSB0", "COM3"
    QString serialNumber; ///< empty where the adapter has none
    quint16 vendor = 0;   ///< USB; 0 where there is none
    quint16 product = 0;  ///< USB; 0 where there is none

    bool operator==(const ListedPort &) const = default;

    /// The ports of the system, in its order.
    [[nodiscard]] static QList<ListedPort> ofSystem();
    /// The port that the last session was on, from the settings. Its name is empty before the first session.
    [[nodiscard]] static ListedPort last();
    /// Stores this as the port of the last session.
    void remember() const;
    /// The name that this port has in \a ports: an adapter with a serial number is known by that, by its vendor and by
    /// its product, whatever its name is now, and any other port by its name. Empty if it is not there.
    [[nodiscard]] QString nameIn(const QList<ListedPort> &ports) const;
};
