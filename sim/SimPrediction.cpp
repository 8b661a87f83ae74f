// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SimPrediction.h"

#include <algorithm>

namespace {

constexpr qint64 passCycleSeconds = 300;
constexpr int outOfService = 3; // uplink status

constexpr Field identField{Field::Kind::Hex};
constexpr Field dateField{Field::Kind::Date};
constexpr Field statusField{Field::Kind::Integer, 0, 4};
constexpr Field filterField{Field::Kind::Integer, 0, 255};
constexpr Field anyNumber{Field::Kind::Decimal, -1e9, 1e9};

QString listLine(const QString &ident, const QStringList &fields, bool blacklisted)
{
    return ident + u',' + fields.join(u',') + (blacklisted ? QStringLiteral(",blacklisted") : QString());
}

} // namespace

SimPrediction::SimPrediction()
{
    const auto bulletin = [](const char *text) { return QString::fromLatin1(text).split(u','); };
    m_satellites = {
        {QStringLiteral("3"), bulletin("2026-1-5T7:3:9Z,6891.72,97.4612,204.118,-23.7431,94.9021,-1.37"), 3, 0},
        {QStringLiteral("4"), bulletin("2026-1-5T6:41:52Z,6894.05,97.4588,187.403,-23.7552,94.9506,-1.42"), 1, 2},
        {QStringLiteral("d"), bulletin("2026-1-4T22:15:30Z,7180.33,98.5017,33.9127,-25.3004,100.921,-0.42"), 0, 1},
        {QStringLiteral("e"), bulletin("2025-11-20T0:0:0Z,7182.9,98.7002,301.55,-25.3107,100.973,-0.4"), 0,
         outOfService},
    };
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
        {QStringLiteral("NEXTPASS"), all, 2, 2, {filterField, filterField}, [this] { return nextPass(); },
         [this](const QStringList &) { return nextPass(); }},
    };
    // clang-format on
}

QDateTime SimPrediction::utcNow() const
{
    return QDateTime::currentDateTimeUtc().addMSecs(m_clockOffsetMs);
}

qint64 SimPrediction::passLeftMs() const
{
    const QDateTime now = utcNow();
    qint64 left = 0;
    for (const auto &pass : {timetablePass(now.toSecsSinceEpoch() / passCycleSeconds), m_extraPass}) {
        if (pass && pass->start <= now) {
            left = std::max(left, now.msecsTo(pass->end()));
        }
    }
    return left;
}

void SimPrediction::setPass(int inSeconds, int durationSeconds)
{
    m_extraPass = Pass{utcNow().addSecs(inSeconds), durationSeconds, 45, m_satellites.front().ident};
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
        const QString line = listLine(satellite.ident, satellite.bulletin, satellite.uplink == outOfService);
        answer.lines += Answer::value(QStringLiteral("AOP"), line).lines;
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
        const QString line = listLine(satellite.ident, fields, satellite.uplink == outOfService);
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

Answer SimPrediction::nextPass() const
{
    // A pass that is running is not the next one: a caller that asks at the end of its pass must get a later one.
    const QDateTime now = utcNow();
    auto next = timetablePass(now.toSecsSinceEpoch() / passCycleSeconds + 1);
    if (m_extraPass && m_extraPass->start > now && (!next || m_extraPass->start < next->start)) {
        next = m_extraPass;
    }
    if (!next) {
        return Answer::error(ErrorCode::Value);
    }
    const QStringList fields{next->ident, deviceDate(next->start), deviceDate(next->end()),
                             QString::number(next->durationSeconds), QString::number(next->elevation)};
    return Answer::value(QStringLiteral("NEXTPASS"), fields.join(u','));
}

std::optional<SimPrediction::Pass> SimPrediction::timetablePass(qint64 number) const
{
    std::vector<QString> inService;
    for (const Satellite &satellite : m_satellites) {
        if (satellite.uplink != outOfService) {
            inService.push_back(satellite.ident);
        }
    }
    if (inService.empty()) {
        return std::nullopt;
    }
    return Pass{QDateTime::fromSecsSinceEpoch(number * passCycleSeconds, Qt::UTC), int(90 + number % 7 * 10),
                int(15 + number % 8 * 9), inService.at(size_t(number) % inService.size())};
}

SimPrediction::Satellite *SimPrediction::find(const QString &ident)
{
    const auto found = std::find_if(m_satellites.begin(), m_satellites.end(), [&ident](const Satellite &satellite) {
        return satellite.ident.compare(ident, Qt::CaseInsensitive) == 0;
    });
    return found == m_satellites.end() ? nullptr : &*found;
}
