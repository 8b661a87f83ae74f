// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Logger.h"

#include "LocalPath.h"
#include "ProcessLog.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QMetaEnum>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace {
void writeSecret(const QString &path, const QByteArray &secret)
{
    const QFileInfo target(path);
    if (target.exists() && !target.isFile()) { // a device, say, would be replaced by a file
        qCCritical(lcEvents).noquote() << "Unable to write" << path << "which is no file";
        return;
    }
    QSaveFile file(path);
    const bool opened = file.open(QIODevice::WriteOnly);
    if (opened && !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
        qCCritical(lcEvents).noquote() << "Others may read" << path; // as on a stick, which knows no owners
    }
    if (!opened || file.write(secret) != secret.size() || !file.flush() || !file.commit()) {
        qCCritical(lcEvents).noquote() << "Unable to write" << path << file.errorString();
    }
}
} // namespace

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

void Logger::exportLogsToFile(const QString &filePath, const QString &logs, bool filterAtCmds, Content content)
{
    if (content == SECRET) {
        writeSecret(localPath(filePath), logs.toUtf8());
        return;
    }
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
