// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PassTable.h"

#include <QFlags>
#include <QString>
#include <QStringList>

#include <optional>

/// The devices that can be played. A flag each, so that a command can name all the boards that know it.
enum class Board { Zep1 = 1, Zep2 = 2, Tbx = 4, Ranger = 8 };
Q_DECLARE_FLAGS(Boards, Board)
Q_DECLARE_OPERATORS_FOR_FLAGS(Boards)

/// What one simulated device is started with.
struct SimOptions
{
    Board board = Board::Zep2;
    QString link;                        ///< symbolic link kept on the port's path; empty for none
    quint32 seed = 1;                    ///< decides the identity and every made-up number
    int airtimeMs = 1500;                ///< length of one transmission
    int latencyMs = 0;                   ///< delay of every answer
    bool baudPace = false;               ///< bytes leave as 9600 baud would send them
    int awakeMs = 600'000;               ///< without a request for so long, a ranger falls asleep again
    std::optional<int> autoWakeMs;       ///< the button is pushed so long after a client opened the port
    QString traceFile;                   ///< log of every line; empty for none
    QString consoleSocket;               ///< local socket of the line console; empty for none
    std::optional<quint16> bulletinPort; ///< the bulletins are served here, 0 for any free port; empty for nowhere
    std::optional<PassTableOptions> passTable; ///< write this and end, without a device
};

/// The options, or else a message for the user and the exit code that goes with it.
struct SimOptionsResult
{
    std::optional<SimOptions> options;
    QString message;
    int exitCode = 0;
};

/// Reads the command line; \a arguments starts with the program's name.
[[nodiscard]] SimOptionsResult readOptions(const QStringList &arguments);
