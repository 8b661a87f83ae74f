// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The table of passes as a file.

#include "PrepassModel.h"

#include <algorithm>
#include <array>

#include <QIODevice>
#include <QStringView>

#include "Prepass.h"
#include "ProcessLog.h"

using namespace Qt::StringLiterals;

namespace {

// Bytes. Far above what nine fields need: it bounds the memory that a file without line ends takes.
constexpr qsizetype c_longestLine = qsizetype{1024} * 1024;

constexpr qsizetype c_fieldCount = 9;
constexpr qsizetype c_nameField = 0;
constexpr qsizetype c_startField = 1;
constexpr qsizetype c_durationField = 4;
constexpr qsizetype c_elevationField = 5;
constexpr std::array<QLatin1StringView, c_fieldCount> c_header{
    "Satellite"_L1,        "Start date/time"_L1, "Middle date/time"_L1, "End date/time"_L1, "Duration"_L1,
    "Middle elevation"_L1, "Start azimuth"_L1,   "Middle azimuth"_L1,   "End azimuth"_L1,
};

/// Whether \a text reads like \a shape, where a 0 stands for any digit.
bool hasShape(QStringView text, QLatin1StringView shape)
{
    return std::equal(text.begin(), text.end(), shape.begin(), shape.end(), [](QChar character, char expected) {
        return expected == '0' ? character >= u'0' && character <= u'9' : character == QLatin1Char(expected);
    });
}

/// "hh:mm:ss"; invalid when \a text is no time of day of that form.
QTime timeOf(QStringView text)
{
    if (!hasShape(text, "00:00:00"_L1)) {
        return {};
    }
    return QTime(text.mid(0, 2).toInt(), text.mid(3, 2).toInt(), text.mid(6, 2).toInt());
}

/// "MM-dd-yyyy hh:mm:ss" in UTC; invalid when \a text is no date of that form. The fields are read one by one because
/// QDateTime::fromString() takes them for local time, and refuses the hour that a summer time skips.
QDateTime startOf(QStringView text)
{
    if (!hasShape(text, "00-00-0000 00:00:00"_L1)) {
        return {};
    }
    const QDate date(text.mid(6, 4).toInt(), text.mid(0, 2).toInt(), text.mid(3, 2).toInt());
    const QTime time = timeOf(text.mid(11));
    return date.isValid() && time.isValid() ? QDateTime(date, time, Qt::OffsetFromUTC, 0) : QDateTime();
}

/// The fields of one line; not nine of them when it has another form under both separators.
QList<QStringView> fieldsOf(QStringView line)
{
    QList<QStringView> fields = line.split(u',');
    if (fields.size() != c_fieldCount) {
        fields = line.split(u';');
    }
    return fields;
}

} // namespace

bool PrepassModel::loadFromCsv(QIODevice &file, const QDateTime &now)
{
    const auto refuse = [](const char *reason) {
        qCCritical(lcEvents, "%s", reason);
        return false;
    };

    QByteArray buffer(c_longestLine + 1, Qt::Uninitialized);
    for (bool isFirstLine = true; !file.atEnd(); isFirstLine = false) {
        const qint64 length = file.readLine(buffer.data(), buffer.size());
        // A line that fills the buffer goes on; a length below zero is a read that failed, and no line.
        const bool isWhole = length > 0 && (length < c_longestLine || buffer.at(length - 1) == '\n');
        const QString line =
            isWhole ? QString::fromUtf8(QByteArray::fromRawData(buffer.constData(), length).trimmed()) : QString();
        const QList<QStringView> fields = fieldsOf(line);
        if (fields.size() != c_fieldCount) {
            return refuse("The CSV file syntax is not correct");
        }
        if (isFirstLine) {
            if (!std::equal(fields.begin(), fields.end(), c_header.begin())) {
                return refuse("The CSV file header(s) are not correct");
            }
            clear();
            continue;
        }
        const QDateTime start = startOf(fields.at(c_startField));
        if (!start.isValid()) {
            return refuse("Wrong date format");
        }
        const QTime duration = timeOf(fields.at(c_durationField));
        if (now.msecsTo(start) + duration.msecsSinceStartOfDay() > 0) {
            addPrepass(fields.at(c_nameField).toString(), start, duration, fields.at(c_elevationField).toDouble(),
                       false);
        }
    }
    std::sort(m_prepassList.begin(), m_prepassList.end(),
              [](const Prepass *left, const Prepass *right) { return left->startUTC < right->startUTC; });
    return true;
}
