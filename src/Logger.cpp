// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Logger.h"

#include "Clock.h"
#include "LocalPath.h"
#include "ProcessLog.h"

#include <QDateTime>
#include <QMetaEnum>
#include <QRegularExpression>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {
/// Puts \a text in the place of what the file at \a path held, whole or not at all.
void replaceFile(const QString &path, const QString &text, Logger::Content content)
{
    if (isOtherThanFile(path)) { // a device, say, would be replaced by a file
        qCCritical(lcEvents).noquote() << "Unable to write" << path << "which is no file";
        return;
    }
    const bool isSecret = content == Logger::SECRET;
    QSaveFile file(path);
    file.setDirectWriteFallback(!isSecret); // for a file that may be written in a folder that may not
    const bool opened = file.open(isSecret ? QIODevice::WriteOnly : QIODevice::WriteOnly | QIODevice::Text);
    if (!opened && !isSecret) {
        return; // an export of logs that cannot be opened is not reported
    }
    if (opened && isSecret && !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
        qCCritical(lcEvents).noquote() << "Others may read" << path; // as on a stick, which knows no owners
    }
    const QByteArray bytes = text.toUtf8();
    if (!opened || file.write(bytes) != bytes.size() || !file.flush() || !file.commit()) {
        qCCritical(lcEvents).noquote() << "Unable to write" << path << file.errorString();
    }
}
} // namespace

Logger::Logger(QObject *parent) : QObject(parent) {}

void Logger::log(Source source, const QString &message)
{
    const QString time = Clock::current()->utcNow().addSecs(m_utcOffsetSeconds).toString(u"hh:mm:ss:zzz");
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
    if (!filterAtCmds || content == SECRET) {
        replaceFile(localPath(filePath), logs, content);
        return;
    }
    // Any source will do: an echo of a command counts as the command.
    static const QRegularExpression commandLine(uR"(^\[.+\]\s\[.{3}\]\s(?<LOG>AT\+.+))"_s);
    static const QRegularExpression lineEnd(u"[\r\n]"_s);
    QString commands;
    const QStringList lines = logs.split(lineEnd);
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = commandLine.match(line);
        if (match.hasMatch()) {
            commands += match.captured(u"LOG") + u'\n';
        }
    }
    replaceFile(localPath(filePath), commands, content);
}
