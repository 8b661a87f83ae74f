// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <functional>
#include <vector>

class Simulator;

/// The commands by which a test or a person plays the world around the device: the button, the satellites, the
/// cable, and everything that can go wrong.
class SimConsole
{
public:
    explicit SimConsole(Simulator &simulator);

    /// Carries out one line; see Simulator::execute().
    [[nodiscard]] QString execute(const QString &line);

private:
    struct Row
    {
        QString word;
        QString help;
        std::function<QString(const QString &)> run; ///< gives the reason of a failure, empty for none
    };

    /// The row of a line, or null if there is no such command.
    [[nodiscard]] const Row *row(const QString &line) const;
    [[nodiscard]] QString help() const;

    std::vector<Row> m_rows;
};
