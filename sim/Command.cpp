// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Command.h"

#include <algorithm>
#include <cmath>

namespace {

bool isDigits(QStringView text)
{
    return !text.isEmpty() && std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

bool isHex(const QString &text)
{
    return !text.isEmpty() && std::all_of(text.cbegin(), text.cend(), [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    });
}

bool isNumber(QStringView text, bool withFraction)
{
    if (text.startsWith(u'-')) {
        text = text.mid(1);
    }
    const auto point = text.indexOf(u'.');
    if (point < 0) {
        return isDigits(text);
    }
    return withFraction && isDigits(text.left(point)) && isDigits(text.mid(point + 1));
}

bool hasDateForm(const QString &text)
{
    const auto parts = text.chopped(text.endsWith(u'Z') ? 1 : 0).split(u'T');
    if (parts.size() != 2 || !text.endsWith(u'Z')) {
        return false;
    }
    const auto date = parts.at(0).split(u'-');
    const auto time = parts.at(1).split(u':');
    return date.size() == 3 && time.size() == 3 && date.at(0).size() == 4 &&
           std::all_of(date.cbegin(), date.cend(), [](const QString &p) { return p.size() <= 4 && isDigits(p); }) &&
           std::all_of(time.cbegin(), time.cend(), [](const QString &p) { return p.size() <= 2 && isDigits(p); });
}

} // namespace

Answer Answer::ok(std::function<void()> afterwards)
{
    return {{QStringLiteral("+OK")}, std::move(afterwards)};
}

Answer Answer::value(const QString &command, const QString &data)
{
    return {{QStringLiteral("+%1=%2").arg(command, data)}, {}};
}

Answer Answer::error(ErrorCode code)
{
    return {{QStringLiteral("+ERROR=%1").arg(int(code))}, {}};
}

ErrorCode Field::check(const QString &text) const
{
    const auto verdict = [](bool rightForm, bool rightValue) {
        return rightForm ? (rightValue ? ErrorCode::None : ErrorCode::Value) : ErrorCode::Format;
    };
    switch (kind) {
    case Kind::Integer: {
        // A number that overflows is still in the right form: as a double it is merely out of range.
        const double value = text.toDouble();
        return verdict(isNumber(text, false), value >= min && value <= max && std::fmod(value - min, step) == 0.0);
    }
    case Kind::Decimal: {
        const double value = text.toDouble();
        return verdict(isNumber(text, true), value >= min && value <= max);
    }
    case Kind::HexByte:
        return verdict(isHex(text) && text.size() == 2, true);
    case Kind::Hex:
        return verdict(isHex(text), true);
    case Kind::Date:
        return verdict(hasDateForm(text), readDeviceDate(text).isValid());
    }
    return ErrorCode::Format;
}

Answer Command::run(const QString &data) const
{
    if (query && data == QLatin1String("?")) {
        return query();
    }
    const QStringList params = data.isEmpty() ? QStringList() : data.split(u',');
    if (!set) {
        return Answer::error(params.isEmpty() ? ErrorCode::MissingParameters : ErrorCode::TooManyParameters);
    }
    if (params.size() < minParams) {
        return Answer::error(ErrorCode::MissingParameters);
    }
    if (params.size() > maxParams) {
        return Answer::error(ErrorCode::TooManyParameters);
    }
    const auto checked = std::min(params.size(), qsizetype(fields.size()));
    for (qsizetype i = 0; i < checked; ++i) {
        const ErrorCode code = fields.at(size_t(i)).check(params.at(i));
        if (code != ErrorCode::None) {
            return Answer::error(code);
        }
    }
    return set(params);
}

QDateTime readDeviceDate(const QString &text)
{
    if (!hasDateForm(text)) {
        return {};
    }
    // Apart, because as one it would pass through the computer's own time zone, which leaves hours out.
    const QDate date = QDate::fromString(text.section(u'T', 0, 0), QStringLiteral("yyyy-M-d"));
    const QTime time = QTime::fromString(text.section(u'T', 1), QStringLiteral("H:m:sZ"));
    return date.isValid() && time.isValid() ? QDateTime(date, time, Qt::UTC) : QDateTime();
}

QString deviceDate(const QDateTime &date)
{
    return date.toUTC().toString(QStringLiteral("yyyy-M-dTH:m:sZ"));
}
