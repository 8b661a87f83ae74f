// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Command.h"

#include <QHash>

/// The settings that the device only keeps and tells: a table of names, boards, defaults and fields. What they mean
/// to the radio or to the prediction is read from here by those who need it.
class SimSettings
{
public:
    explicit SimSettings(quint32 seed);

    /// The commands by which the settings are read and written. They refer to this object.
    [[nodiscard]] std::vector<Command> commands();
    /// Field \a index of setting \a name as it stands; empty if the setting has no such field.
    [[nodiscard]] QString text(const QString &name, int index = 0) const;
    /// The same as a number, 0 for none.
    [[nodiscard]] int number(const QString &name, int index = 0) const;

private:
    Answer store(const QString &name, bool keepsOmitted, const QStringList &params);

    QHash<QString, QStringList> m_values;
};
