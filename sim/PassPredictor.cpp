// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PassPredictor.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace {

constexpr double earthRadiusKm = 6371;
constexpr double fastestMinutes = 84; // round the Earth at ground level
constexpr double msPerMinute = 60'000;
constexpr qint64 dayMs = qint64{24} * 60 * 60 * 1000;

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180;
}

double degrees(double radians)
{
    return radians * 180 / std::numbers::pi;
}

double product(const std::array<double, 3> &a, const std::array<double, 3> &b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

double arcCosine(double cosine)
{
    return std::acos(std::clamp(cosine, -1.0, 1.0)); // rounding may have carried it past 1
}

} // namespace

bool Orbit::isPossible() const
{
    return nodeDate.isValid() && semiMajorAxis > earthRadiusKm && periodMinutes >= fastestMinutes;
}

Orbit Orbit::asOf(const QDateTime &date) const
{
    const double periodMs = periodMinutes * msPerMinute;
    const double revolutions = std::floor(double(nodeDate.msecsTo(date)) / periodMs);
    Orbit fresh = *this;
    fresh.nodeDate = nodeDate.addMSecs(std::llround(revolutions * periodMs));
    fresh.nodeLongitude = std::remainder(nodeLongitude + revolutions * nodeDrift, 360);
    return fresh;
}

PassPredictor::PassPredictor(const Orbit &orbit, const PassCriteria &criteria)
    : m_orbit(orbit), m_criteria(criteria), m_stepMs(std::max(criteria.stepSeconds, 1) * qint64(1000))
{
    const double latitude = radians(criteria.latitude);
    const double longitude = radians(criteria.longitude);
    m_up = {std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude), std::sin(latitude)};
    m_north = {-std::sin(latitude) * std::cos(longitude), -std::sin(latitude) * std::sin(longitude),
               std::cos(latitude)};
    m_east = {-std::sin(longitude), std::cos(longitude), 0};
    // In the triangle of the centre, the observer and a satellite at that elevation, by the law of sines.
    const double elevation = radians(criteria.minElevation);
    m_sightDegrees =
        degrees(arcCosine(earthRadiusKm / orbit.semiMajorAxis * std::cos(elevation))) - criteria.minElevation;
    m_degreesPerMs = (360 + std::abs(orbit.nodeDrift)) / (orbit.periodMinutes * msPerMinute);
}

std::optional<Pass> PassPredictor::passAt(const QDateTime &date) const
{
    const qint64 ms = date.toMSecsSinceEpoch();
    if (!m_orbit.isPossible() || !isSeen(ms)) {
        return std::nullopt;
    }
    return worthwhilePass(lastSeen(ms, ms - dayMs), lastSeen(ms, ms + dayMs));
}

std::optional<Pass> PassPredictor::nextPass(const QDateTime &after, const QDateTime &until) const
{
    if (!m_orbit.isPossible()) {
        return std::nullopt;
    }
    const qint64 limit = until.toMSecsSinceEpoch();
    qint64 ms = after.toMSecsSinceEpoch();
    while (ms <= limit) {
        if (isSeen(ms)) {
            ms = lastSeen(ms, limit + dayMs) + 1;
            continue;
        }
        const qint64 rise = firstSeen(ms, limit + 1);
        if (rise > limit) {
            break;
        }
        const qint64 set = lastSeen(rise, rise + dayMs);
        auto pass = worthwhilePass(rise, set);
        if (pass && pass->start <= until) {
            return pass;
        }
        ms = set + 1;
    }
    return std::nullopt;
}

PassPredictor::Vector PassPredictor::satelliteAt(qint64 ms) const
{
    const double revolutions =
        double(ms - m_orbit.nodeDate.toMSecsSinceEpoch()) / (m_orbit.periodMinutes * msPerMinute);
    const double node = radians(m_orbit.nodeLongitude + revolutions * m_orbit.nodeDrift);
    const double along = 2 * std::numbers::pi * revolutions;
    const double inclination = radians(m_orbit.inclination);
    const double ahead = std::cos(along);
    const double aside = std::sin(along) * std::cos(inclination);
    return {ahead * std::cos(node) - aside * std::sin(node), ahead * std::sin(node) + aside * std::cos(node),
            std::sin(along) * std::sin(inclination)};
}

double PassPredictor::degreesOutOfSight(qint64 ms) const
{
    return degrees(arcCosine(product(satelliteAt(ms), m_up))) - m_sightDegrees;
}

/// The first ms from \a from, at which it is hidden, at which it is seen; \a limit if there is none before.
qint64 PassPredictor::firstSeen(qint64 from, qint64 limit) const
{
    qint64 hidden = from;
    for (;;) {
        // Far away it cannot be here before this; the step is for the last stretch.
        const auto earliest = qint64(degreesOutOfSight(hidden) / m_degreesPerMs);
        const qint64 next = hidden + std::max(earliest, m_stepMs);
        if (isSeen(next)) {
            return std::min(lastWithSameSight(hidden, next) + 1, limit);
        }
        if (next >= limit) {
            return limit;
        }
        hidden = next;
    }
}

/// The last ms on the way from \a from to \a limit, before it or after it, up to which it is seen without a break.
qint64 PassPredictor::lastSeen(qint64 from, qint64 limit) const
{
    const qint64 step = limit < from ? -m_stepMs : m_stepMs;
    for (qint64 seen = from; std::abs(limit - from) > std::abs(seen - from); seen += step) {
        if (!isSeen(seen + step)) {
            return lastWithSameSight(seen, seen + step);
        }
    }
    return limit;
}

/// Narrows down the one change of sight between two dates. To the ms, so that all who look for it find the same.
qint64 PassPredictor::lastWithSameSight(qint64 from, qint64 beyond) const
{
    const bool sight = isSeen(from);
    while (std::abs(beyond - from) > 1) {
        const qint64 middle = from + (beyond - from) / 2;
        (isSeen(middle) == sight ? from : beyond) = middle;
    }
    return from;
}

std::optional<Pass> PassPredictor::worthwhilePass(qint64 firstMs, qint64 lastMs) const
{
    Pass pass;
    pass.start = QDateTime::fromMSecsSinceEpoch((firstMs + 999) / 1000 * 1000, Qt::UTC);
    pass.end = QDateTime::fromMSecsSinceEpoch(lastMs / 1000 * 1000, Qt::UTC);
    double ignored = 0;
    look(pass.start.toMSecsSinceEpoch(), ignored, pass.startAzimuth);
    look(pass.middle().toMSecsSinceEpoch(), pass.middleElevation, pass.middleAzimuth);
    look(pass.end.toMSecsSinceEpoch(), ignored, pass.endAzimuth);
    const bool isWorthIt = pass.start < pass.end && pass.durationSeconds() >= m_criteria.minDurationSeconds &&
                           pass.middleElevation <= m_criteria.maxElevation;
    return isWorthIt ? std::optional(pass) : std::nullopt;
}

void PassPredictor::look(qint64 ms, double &elevation, double &azimuth) const
{
    Vector sight = satelliteAt(ms);
    for (size_t i = 0; i < sight.size(); ++i) {
        sight[i] = m_orbit.semiMajorAxis * sight[i] - earthRadiusKm * m_up[i];
    }
    elevation = degrees(std::asin(product(sight, m_up) / std::sqrt(product(sight, sight))));
    azimuth = degrees(std::atan2(product(sight, m_east), product(sight, m_north)));
    azimuth += azimuth < 0 ? 360 : 0;
}
