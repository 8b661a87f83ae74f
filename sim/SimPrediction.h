// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Command.h"

#include <optional>

/// The clock, the orbit bulletins, and the passes that the device claims to compute from them. The passes are made
/// up: one starts every five minutes of the device's clock, by satellites in turn. POS and PREPASS_CFG do not move
/// them.
class SimPrediction
{
public:
    SimPrediction();

    [[nodiscard]] std::vector<Command> commands();
    [[nodiscard]] QDateTime utcNow() const;
    /// Time left of the pass that is running, in ms; 0 outside a pass.
    [[nodiscard]] qint64 passLeftMs() const;
    /// Puts a pass of \a durationSeconds into the timetable, \a inSeconds from now. It replaces the last one put there.
    void setPass(int inSeconds, int durationSeconds);

private:
    struct Satellite
    {
        QString ident;
        QStringList bulletin; ///< date and six orbit numbers
        int downlink = 0;
        int uplink = 0;
    };
    struct Pass
    {
        QDateTime start;
        int durationSeconds = 0;
        int elevation = 0;
        QString ident;

        [[nodiscard]] QDateTime end() const { return start.addSecs(durationSeconds); }
    };

    Answer setDate(const QString &text);
    Answer listBulletins() const;
    Answer setBulletin(const QStringList &params);
    Answer listStatuses() const;
    Answer setStatus(const QStringList &params);
    Answer nextPass() const;
    /// None while every satellite is out of service.
    [[nodiscard]] std::optional<Pass> timetablePass(qint64 number) const;
    [[nodiscard]] Satellite *find(const QString &ident);

    qint64 m_clockOffsetMs = 0; ///< of the device's clock against the computer's
    std::vector<Satellite> m_satellites;
    std::optional<Pass> m_extraPass;
};
