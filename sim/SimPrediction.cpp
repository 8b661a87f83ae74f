// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SimPrediction.h"

#include "Fleet.h"
#include "SimSettings.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int statusNotKnown = 4; // of either link
// What is missing for a pass: orbit parameters, or a place in the span that was configured.
constexpr ErrorCode noBulletin = ErrorCode::MissingParameters;
constexpr ErrorCode noPass = ErrorCode::Value;

constexpr Field identField{Field::Kind::Hex};
constexpr Field dateField{Field::Kind::Date};
constexpr Field statusField{Field::Kind::Integer, 0, statusNotKnown};
constexpr Field filterField{Field::Kind::Integer, 0, 3};
constexpr Field anyNumber{Field::Kind::Decimal, -1e9, 1e9};

// Fields of PREPASS_CFG.
enum { StartDate = 2, EndDate, MinElevation, MaxElevation, MinMinutes, Step = 9 };
constexpr QLatin1String configuration("PREPASS_CFG");

QString listLine(const QString &ident, const QStringList &fields, bool blacklisted)
{
    return ident + u',' + fields.join(u',') + (blacklisted ? QStringLiteral(",blacklisted") : QString());
}

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

} // namespace

SimPrediction::Satellite::Satellite(const FleetSatellite &satellite)
    : ident(satellite.ident.toLower())
    , bulletin{deviceDate(satellite.orbit.nodeDate), number(satellite.orbit.semiMajorAxis),
               number(satellite.orbit.inclination),  number(satellite.orbit.nodeLongitude),
               number(satellite.orbit.nodeDrift),    number(satellite.orbit.periodMinutes),
               number(satellite.semiMajorAxisDrift)}
    , downlink(satellite.downlinkStatus)
    , uplink(satellite.uplinkStatus)
{
}

bool SimPrediction::Satellite::isUsable(bool needsDownlink) const
{
    const bool hears = uplink != FleetSatellite::outOfService && uplink != statusNotKnown;
    const bool speaks = downlink == 1 || downlink == 3; // one of its two transmitters is on
    return !bulletin.isEmpty() && !isBlacklisted && hears && (speaks || !needsDownlink);
}

Orbit SimPrediction::Satellite::orbit() const
{
    Orbit orbit;
    orbit.nodeDate = readDeviceDate(bulletin.at(0));
    orbit.semiMajorAxis = bulletin.at(1).toDouble();
    orbit.inclination = bulletin.at(2).toDouble();
    orbit.nodeLongitude = bulletin.at(3).toDouble();
    orbit.nodeDrift = bulletin.at(4).toDouble();
    orbit.periodMinutes = bulletin.at(5).toDouble();
    return orbit;
}

SimPrediction::SimPrediction(const SimSettings &settings, quint32 seed) : m_settings(settings)
{
    for (const FleetSatellite &satellite : fleet(seed)) {
        if (satellite.isInFirmware) {
            m_satellites.emplace_back(satellite);
        }
    }
}

std::vector<Command> SimPrediction::commands()
{
    const Boards radioBoards = Board::Zep2 | Board::Tbx;
    const Boards all = radioBoards | Board::Ranger;
    std::vector<Field> orbit(8, anyNumber);
    orbit[0] = identField;
    orbit[1] = dateField;
    // clang-format off
    return {
        // name, boards, parameters from, to, fields, query, set
        {QStringLiteral("UDATE"), all, 1, 1, {dateField},
         [this] { return Answer::value(QStringLiteral("UDATE"), deviceDate(utcNow())); },
         [this](const QStringList &params) { return setDate(params.first()); }},
        {QStringLiteral("AOP"), all, 8, 8, orbit, [this] { return listBulletins(); },
         [this](const QStringList &params) { return setBulletin(params); }},
        {QStringLiteral("SAT"), radioBoards, 3, 3, {identField, statusField, statusField}, [this] { return listStatuses(); },
         [this](const QStringList &params) { return setStatus(params); }},
        // The filters ask for a downlink and an uplink in service if they are not 0. A satellite that does not hear
        // the device is of no use at all, so the second changes nothing.
        {QStringLiteral("NEXTPASS"), all, 2, 2, {filterField, filterField}, [this] { return nextPass(false); },
         [this](const QStringList &params) { return nextPass(params.first().toInt() != 0); }},
    };
    // clang-format on
}

QDateTime SimPrediction::utcNow() const
{
    return QDateTime::currentDateTimeUtc().addMSecs(m_clockOffsetMs);
}

std::optional<SimPrediction::SatellitePass> SimPrediction::runningPass() const
{
    const QDateTime now = utcNow();
    const QDateTime from = readDeviceDate(m_settings.text(configuration, StartDate));
    const QDateTime until = readDeviceDate(m_settings.text(configuration, EndDate));
    std::optional<SatellitePass> running;
    if (m_extraPass && m_extraPass->pass.start <= now && now < m_extraPass->pass.end) {
        running = m_extraPass;
    }
    for (const Satellite &satellite : m_satellites) {
        if (!satellite.isUsable(false)) {
            continue;
        }
        const auto pass = PassPredictor(satellite.orbit(), criteria()).passAt(now);
        if (pass && pass->start >= from && pass->start <= until && pass->start <= now && now < pass->end &&
            (!running || pass->start > running->pass.start)) {
            running = SatellitePass{satellite.ident, *pass};
        }
    }
    return running;
}

void SimPrediction::setPass(int inSeconds, int durationSeconds)
{
    Pass pass;
    pass.start = utcNow().addSecs(inSeconds);
    pass.end = pass.start.addSecs(durationSeconds);
    pass.middleElevation = 45;
    m_extraPass = SatellitePass{m_satellites.front().ident, pass};
}

bool SimPrediction::toggleBlacklisted(const QString &ident)
{
    Satellite *satellite = find(ident);
    if (satellite) {
        satellite->isBlacklisted = !satellite->isBlacklisted;
    }
    return satellite != nullptr;
}

void SimPrediction::forgetBulletins()
{
    for (Satellite &satellite : m_satellites) {
        satellite.bulletin.clear();
    }
}

Answer SimPrediction::setDate(const QString &text)
{
    m_clockOffsetMs = QDateTime::currentDateTimeUtc().msecsTo(readDeviceDate(text));
    return Answer::ok();
}

Answer SimPrediction::listBulletins() const
{
    Answer answer;
    for (const Satellite &satellite : m_satellites) {
        if (!satellite.bulletin.isEmpty()) {
            const QString line = listLine(satellite.ident, satellite.bulletin, satellite.isBlacklisted);
            answer.lines += Answer::value(QStringLiteral("AOP"), line).lines;
        }
    }
    answer.lines += Answer::value(QStringLiteral("AOP"), QStringLiteral("end")).lines;
    return answer;
}

Answer SimPrediction::setBulletin(const QStringList &params)
{
    Satellite *satellite = find(params.first());
    if (!satellite) {
        return Answer::error(ErrorCode::Value);
    }
    satellite->bulletin = params.mid(1);
    return Answer::ok();
}

Answer SimPrediction::listStatuses() const
{
    Answer answer;
    for (const Satellite &satellite : m_satellites) {
        const QStringList fields{QString::number(satellite.downlink), QString::number(satellite.uplink)};
        const QString line = listLine(satellite.ident, fields, satellite.isBlacklisted);
        answer.lines += Answer::value(QStringLiteral("SAT"), line).lines;
    }
    answer.lines += Answer::value(QStringLiteral("SAT"), QStringLiteral("end")).lines;
    return answer;
}

Answer SimPrediction::setStatus(const QStringList &params)
{
    Satellite *satellite = find(params.first());
    if (!satellite) {
        return Answer::error(ErrorCode::Value);
    }
    satellite->downlink = params.at(1).toInt();
    satellite->uplink = params.at(2).toInt();
    return Answer::ok();
}

Answer SimPrediction::nextPass(bool needsDownlink) const
{
    // A pass that is running is not the next one: a caller that asks at the end of its pass must get a later one.
    const QDateTime now = utcNow();
    const QDateTime from = std::max(now, readDeviceDate(m_settings.text(configuration, StartDate)));
    QDateTime until = readDeviceDate(m_settings.text(configuration, EndDate));
    std::optional<SatellitePass> next;
    bool hasBulletin = false;
    for (const Satellite &satellite : m_satellites) {
        hasBulletin = hasBulletin || !satellite.bulletin.isEmpty();
        if (!satellite.isUsable(needsDownlink)) {
            continue;
        }
        if (const auto pass = PassPredictor(satellite.orbit(), criteria()).nextPass(from, until)) {
            next = SatellitePass{satellite.ident, *pass};
            until = pass->start.addSecs(-1); // only an earlier one is of interest from here
        }
    }
    if (m_extraPass && m_extraPass->pass.start > now && (!next || m_extraPass->pass.start < next->pass.start)) {
        next = m_extraPass;
    }
    if (!next) {
        return Answer::error(hasBulletin ? noPass : noBulletin);
    }
    const Pass &pass = next->pass;
    const QStringList fields{next->ident, deviceDate(pass.start), deviceDate(pass.end),
                             QString::number(pass.durationSeconds()),
                             QString::number(std::lround(pass.middleElevation))};
    return Answer::value(QStringLiteral("NEXTPASS"), fields.join(u','));
}

PassCriteria SimPrediction::criteria() const
{
    const auto setting = [this](const QString &name, int index) { return m_settings.text(name, index).toDouble(); };
    PassCriteria criteria;
    criteria.latitude = setting(QStringLiteral("POS"), 0);
    criteria.longitude = setting(QStringLiteral("POS"), 1);
    criteria.minElevation = setting(configuration, MinElevation);
    criteria.maxElevation = setting(configuration, MaxElevation);
    criteria.minDurationSeconds = int(setting(configuration, MinMinutes) * 60);
    criteria.stepSeconds = int(setting(configuration, Step));
    return criteria;
}

SimPrediction::Satellite *SimPrediction::find(const QString &ident)
{
    const auto found = std::find_if(m_satellites.begin(), m_satellites.end(), [&ident](const Satellite &satellite) {
        return satellite.ident.compare(ident, Qt::CaseInsensitive) == 0;
    });
    return found == m_satellites.end() ? nullptr : &*found;
}
