// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Command.h"

#include <QHash>

/// The settings that the device only keeps and tells: a table of names, boards, defaults and fields. What they mean
/// to the radio or to the prediction is read from here by those who need it. A ranger tells at once what was set, and
/// goes by it only from its next restart on; on the other boards a setting takes force at once and outlives the power.
class SimSettings
{
public:
    SimSettings(Board board, quint32 seed);

    /// The commands by which the settings are read and written. They refer to this object.
    [[nodiscard]] std::vector<Command> commands();
    /// What was set takes force.
    void apply() { m_inForce = m_values; }
    /// What was set and has not taken force is lost.
    void forget() { m_values = m_inForce; }
    /// Field \a index of setting \a name as it is in force; empty if the setting has no such field.
    [[nodiscard]] QString text(const QString &name, int index = 0) const;
    /// The same as a number, 0 for none.
    [[nodiscard]] int number(const QString &name, int index = 0) const;

private:
    Answer store(const QString &name, bool keepsOmitted, const QStringList &params);

    const bool m_needsRestart;
    QHash<QString, QStringList> m_values; ///< as the device tells them
    QHash<QString, QStringList> m_inForce;
};
