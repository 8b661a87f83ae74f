// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SimSettings.h"

#include "SimIdentity.h"

namespace {

using Kind = Field::Kind;

constexpr Field flag{Kind::Integer, 0, 1};
constexpr Field latitude{Kind::Decimal, -90, 90};
constexpr Field longitude{Kind::Decimal, -180, 180};
constexpr Field elevation{Kind::Decimal, 0, 90};
constexpr Field date{Kind::Date};
constexpr Field pair{Kind::HexByte};

const Boards radioBoards = Board::Zep2 | Board::Tbx;
const Boards predictionBoards = radioBoards | Board::Ranger;

struct SettingRow
{
    const char *name;
    Boards boards;
    int minParams;     ///< fewer is an error; between this and the number of fields is not
    bool keepsOmitted; ///< a field that is not given keeps its value; else it is dropped
    const char *initial;
    std::vector<Field> fields;
};

const std::vector<SettingRow> &rows()
{
    const std::vector<Field> sevenFlags(7, flag);
    // clang-format off
    static const std::vector<SettingRow> table{
        // name, boards, least parameters, keeps the omitted, initial value, fields
        // Zep1's radio: frequency in Hz with its optional mark, power in mW, message format, carrier
        {"ATXFRQ", Board::Zep1, 1, false, "401650000", {{Kind::Integer, 399900000, 403000000}, {Kind::Integer, 1, 1}}},
        {"PWR", Board::Zep1, 1, true, "1000", {{Kind::Integer, 100, 1000, 50}}},
        {"AFMT", Board::Zep1, 3, true, "1,16,32", {flag, {Kind::Integer, 0, 16, 16}, {Kind::Integer, 0, 32, 32}}},
        {"CW", radioBoards | Board::Zep1, 1, true, "0", {flag}},
        // repetitions, period between them in ms
        {"ATXRP", radioBoards, 1, true, "0,60000", {{Kind::Integer, 0, 255}, {Kind::Integer, 1000, 3600000}}},
        {"ZEP_REDUN", Board::Ranger, 1, true, "4", {{Kind::Integer, 1, 10}}},
        // prediction
        {"PREPASS_EN", predictionBoards, 1, true, "0", {{Kind::Integer, 0, 2}}},
        {"POS", predictionBoards, 2, true, "43.5495,1.4849", {latitude, longitude}},
        // position, span, elevation from, to, least minutes, most passes, time margin, step in s; the span is set below
        {"PREPASS_CFG", predictionBoards, 10, true, "43.5495,1.4849,,,5,90,2,1000,5,30",
         {latitude, longitude, date, date, elevation, elevation, {Kind::Decimal, 0, 60}, {Kind::Integer, 1, 65535},
          {Kind::Decimal, 0, 60}, {Kind::Integer, 1, 255}}},
        // sensors: period in s, one flag for each of seven sensors, alerts with their bounds
        {"PACQ", Board::Ranger, 1, true, "3600", {{Kind::Integer, 60, 65535}}},
        {"PACQ_SENS", Board::Ranger, 7, true, "1,1,1,1,1,1,1", sevenFlags},
        {"ALRT_SENS", Board::Ranger, 7, true, "1,1,1,1,1,1,1", sevenFlags},
        {"ALRT_LIGHT", Board::Ranger, 1, true, "0,400,3000", {flag, {Kind::Integer, 0, 65535}, {Kind::Integer, 0, 65535}}},
        {"ALRT_ACC", Board::Ranger, 1, true, "0,4000", {flag, {Kind::Integer, 0, 65535}}},
        {"ALRT_DRYC", Board::Ranger, 1, true, "0,1", {flag, flag}},
        {"ALRT_PB", Board::Ranger, 1, true, "0", {flag}},
        // LoRa; the keys come from the seed
        {"LORA_EN", Board::Ranger, 1, true, "0", {flag}},
        {"LORA_REDUN", Board::Ranger, 1, true, "4", {{Kind::Integer, 1, 10}}},
        {"LORA_ACK", Board::Ranger, 1, true, "1", {flag}},
        {"LORA_AEUI", Board::Ranger, 8, true, "", std::vector<Field>(8, pair)},
        {"LORA_AKEY", Board::Ranger, 16, true, "", std::vector<Field>(16, pair)},
    };
    // clang-format on
    return table;
}

} // namespace

SimSettings::SimSettings(Board board, quint32 seed) : m_needsRestart(board == Board::Ranger)
{
    for (const SettingRow &row : rows()) {
        m_values.insert(QLatin1String(row.name), QString::fromLatin1(row.initial).split(u','));
    }
    // A device fresh from the factory predicts for the week that begins with the day it is started.
    QStringList &prediction = m_values[QStringLiteral("PREPASS_CFG")];
    const QDateTime today(QDateTime::currentDateTimeUtc().date(), QTime(0, 0), Qt::UTC);
    prediction[2] = deviceDate(today);
    prediction[3] = deviceDate(today.addDays(7));
    const SimIdentity identity(seed);
    m_values.insert(QStringLiteral("LORA_AEUI"), identity.loraAppEui);
    m_values.insert(QStringLiteral("LORA_AKEY"), identity.loraAppKey);
    apply();
}

std::vector<Command> SimSettings::commands()
{
    std::vector<Command> commands;
    for (const SettingRow &row : rows()) {
        const QString name = QLatin1String(row.name);
        const bool keepsOmitted = row.keepsOmitted;
        commands.push_back(
            {name, row.boards, row.minParams, int(row.fields.size()), row.fields,
             [this, name] { return Answer::value(name, m_values.value(name).join(u',')); },
             [this, name, keepsOmitted](const QStringList &params) { return store(name, keepsOmitted, params); }});
    }
    return commands;
}

QString SimSettings::text(const QString &name, int index) const
{
    return m_inForce.value(name).value(index);
}

int SimSettings::number(const QString &name, int index) const
{
    return text(name, index).toInt();
}

Answer SimSettings::store(const QString &name, bool keepsOmitted, const QStringList &params)
{
    const QStringList kept = keepsOmitted ? m_values.value(name).mid(params.size()) : QStringList();
    m_values.insert(name, params + kept);
    if (!m_needsRestart) {
        apply();
    }
    return Answer::ok();
}
