// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Command.h"
#include "PassPredictor.h"

#include <optional>

struct FleetSatellite;
class SimSettings;

/// The clock, the orbit bulletins, and the passes that the device computes from them for its position and within the
/// span of its prediction settings. The maximum of passes and the time margin among those are only kept.
class SimPrediction
{
public:
    /// A pass of one of the device's satellites.
    struct SatellitePass
    {
        QString ident;
        Pass pass;
    };

    SimPrediction(const SimSettings &settings, quint32 seed);

    [[nodiscard]] std::vector<Command> commands();
    [[nodiscard]] QDateTime utcNow() const;
    /// The position and the limits that are set.
    [[nodiscard]] PassCriteria criteria() const;
    /// Of the passes that are running, the one that began last.
    [[nodiscard]] std::optional<SatellitePass> runningPass() const;

    /// Puts a pass 45 degrees high into the sky, \a inSeconds from now, whatever the bulletins say. It replaces the
    /// last one put there.
    void setPass(int inSeconds, int durationSeconds);
    /// Marks a satellite as not to be used, or no longer so; false if the device does not know it.
    [[nodiscard]] bool toggleBlacklisted(const QString &ident);
    /// Leaves the device without any bulletin.
    void forgetBulletins();

private:
    struct Satellite
    {
        QString ident;
        QStringList bulletin; ///< date and six orbit numbers, as they were set; empty for none
        int downlink = 0;
        int uplink = 0;
        bool isBlacklisted = false;

        explicit Satellite(const FleetSatellite &satellite);
        [[nodiscard]] bool isUsable(bool needsDownlink) const;
        [[nodiscard]] Orbit orbit() const;
    };

    Answer setDate(const QString &text);
    Answer listBulletins() const;
    Answer setBulletin(const QStringList &params);
    Answer listStatuses() const;
    Answer setStatus(const QStringList &params);
    Answer nextPass(bool needsDownlink) const;
    [[nodiscard]] Satellite *find(const QString &ident);

    const SimSettings &m_settings;
    qint64 m_clockOffsetMs = 0; ///< of the device's clock against the computer's
    std::vector<Satellite> m_satellites;
    std::optional<SatellitePass> m_extraPass;
};
