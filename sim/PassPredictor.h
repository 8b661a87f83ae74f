// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>

#include <array>
#include <optional>

/// A circular orbit as a bulletin gives it. The node is where the satellite crosses the equator northwards.
struct Orbit
{
    QDateTime nodeDate;       ///< when it did, UTC
    double nodeLongitude = 0; ///< where it did, degrees east
    double nodeDrift = 0;     ///< how much further east the next node lies, degrees a revolution
    double periodMinutes = 0; ///< from node to node
    double inclination = 0;   ///< degrees
    double semiMajorAxis = 0; ///< km

    /// Whether a satellite can move so: above the ground, and no faster than there.
    [[nodiscard]] bool isPossible() const;
    /// The same orbit, told from its last node before \a date: what a fresh bulletin would say.
    [[nodiscard]] Orbit asOf(const QDateTime &date) const;
};

/// Where the passes are seen from, and which are worth it.
struct PassCriteria
{
    double latitude = 0;     ///< degrees north
    double longitude = 0;    ///< degrees east
    double minElevation = 0; ///< degrees; a pass is the time above it
    double maxElevation = 90;
    int minDurationSeconds = 0;
    int stepSeconds = 30; ///< of the search; a pass shorter than this can be missed
};

/// Start and end in whole seconds, both above the elevation asked for. Angles in degrees, azimuths from 0 to 360.
struct Pass
{
    QDateTime start;
    QDateTime end;
    double middleElevation = 0;
    double startAzimuth = 0;
    double middleAzimuth = 0;
    double endAzimuth = 0;

    [[nodiscard]] int durationSeconds() const { return int(start.secsTo(end)); }
    [[nodiscard]] QDateTime middle() const { return start.addMSecs(start.msecsTo(end) / 2); }
};

/// Computes when one satellite is seen, on a round Earth. No drag: the drift of the semi-major axis is not used.
class PassPredictor
{
public:
    PassPredictor(const Orbit &orbit, const PassCriteria &criteria);

    /// The pass that is running at \a date. A satellite that never sets is cut to a day on either side.
    [[nodiscard]] std::optional<Pass> passAt(const QDateTime &date) const;
    /// The first pass that starts after \a after, and not after \a until. One that is running is not the next.
    [[nodiscard]] std::optional<Pass> nextPass(const QDateTime &after, const QDateTime &until) const;

private:
    using Vector = std::array<double, 3>;

    [[nodiscard]] Vector satelliteAt(qint64 ms) const;
    [[nodiscard]] double degreesOutOfSight(qint64 ms) const;
    [[nodiscard]] bool isSeen(qint64 ms) const { return degreesOutOfSight(ms) <= 0; }
    [[nodiscard]] qint64 firstSeen(qint64 from, qint64 limit) const;
    [[nodiscard]] qint64 lastSeen(qint64 from, qint64 limit) const;
    [[nodiscard]] qint64 lastWithSameSight(qint64 from, qint64 beyond) const;
    [[nodiscard]] std::optional<Pass> worthwhilePass(qint64 firstMs, qint64 lastMs) const;
    void look(qint64 ms, double &elevation, double &azimuth) const;

    const Orbit m_orbit;
    const PassCriteria m_criteria;
    const qint64 m_stepMs;
    Vector m_up; ///< of the observer, as the two below: axes that turn with the Earth
    Vector m_north;
    Vector m_east;
    double m_sightDegrees = 0; ///< how far from the observer, seen from the Earth's centre, the satellite is seen
    double m_degreesPerMs = 0; ///< no faster can it come nearer
};
