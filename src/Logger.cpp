// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Logger.h"

#include "LocalPath.h"

#include <QDateTime>
#include <QFile>
#include <QMetaEnum>
#include <QRegularExpression>
#include <QTextStream>

using namespace Qt::StringLiterals;

Logger::Logger(QObject *parent) : QObject(parent) {}

void Logger::log(Source source, const QString &message)
{
    const QString time = QDateTime::currentDateTimeUtc().addSecs(m_utcOffsetSeconds).toString(u"hh:mm:ss:zzz");
    const QLatin1String name(QMetaEnum::fromType<Source>().valueToKey(source));
    const QString line = u'[' + time + "] ["_L1 + name + "] "_L1 + message;
    Q_EMIT logCreated(line.trimmed());
}

void Logger::clearLogs()
{
    Q_EMIT logsCleared();
}

void Logger::exportLogsToFile(const QString &filePath, const QString &logs, bool filterAtCmds)
{
    QFile file(localPath(filePath));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        return; // an export that cannot be written is not reported
    }
    QTextStream stream(&file);
    if (!filterAtCmds) {
        stream << logs;
        return;
    }
    // Any source will do: an echo of a command counts as the command.
    static const QRegularExpression commandLine(uR"(^\[.+\]\s\[.{3}\]\s(?<LOG>AT\+.+))"_s);
    static const QRegularExpression lineEnd(u"[\r\n]"_s);
    const QStringList lines = logs.split(lineEnd);
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = commandLine.match(line);
        if (match.hasMatch()) {
            stream << match.captured(u"LOG") << '\n';
        }
    }
}
