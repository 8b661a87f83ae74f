// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SettingsStore.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QSaveFile>
#include <QSettings>
#include <QString>

#include "ProcessLog.h"

namespace {

constexpr auto c_copy = ".kept";
constexpr auto c_next = ".next"; // the copy on its way into the place of the settings
constexpr auto c_torn = ".torn";

std::filesystem::path beside(const QString &path, const char *suffix)
{
    return QFileInfo(path + QLatin1String(suffix)).filesystemAbsoluteFilePath();
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Whether the last line is there to its end.
bool isEnded(const QByteArray &content)
{
    return content.endsWith('\n');
}

/// How many lines give a value to a key; a value has no line end of its own.
qsizetype keyCount(const QByteArray &content)
{
    const QList<QByteArray> lines = content.split('\n');
    return std::count_if(lines.cbegin(), lines.cend(),
                         [](const QByteArray &line) { return line.contains('=') && !line.startsWith('['); });
}

} // namespace

void SettingsStore::keepCopy()
{
    QSettings settings;
    settings.setFallbacksEnabled(false); // what other files say is not in this one
    const QString path = settings.fileName();
    if (!QFile::exists(path)) { // the platform keeps them elsewhere
        return;
    }
    const QByteArray stored = content(path);
    if (!isEnded(stored) || keyCount(stored) < settings.allKeys().size()) {
        qCCritical(lcEvents).noquote() << "Unable to write" << path;
        return;
    }
    QSaveFile copy(path + QLatin1String(c_copy));
    if (!copy.open(QIODevice::WriteOnly) || copy.write(stored) != stored.size() || !copy.flush() || !copy.commit()) {
        qCCritical(lcEvents).noquote() << "Unable to write" << copy.fileName() << copy.errorString();
    }
}

void SettingsStore::mend()
{
    const QString path = QSettings().fileName();
    if (!QFile::exists(path) || isEnded(content(path)) || !isEnded(content(path + QLatin1String(c_copy)))) {
        return;
    }
    // By second names and a rename over the first: needs no room on the disk, and is done at once or not at all.
    QFile::remove(path + QLatin1String(c_torn));
    QFile::remove(path + QLatin1String(c_next));
    std::error_code error;
    std::filesystem::create_hard_link(beside(path, ""), beside(path, c_torn), error);
    if (!error) {
        std::filesystem::create_hard_link(beside(path, c_copy), beside(path, c_next), error);
    }
    if (!error) {
        std::filesystem::rename(beside(path, c_next), beside(path, ""), error);
    }
    if (error) {
        qCCritical(lcEvents).noquote() << path << "is torn, its copy cannot be taken:" << error.message().c_str();
    } else {
        qCCritical(lcEvents).noquote() << path << "was torn, the copy of the last close is taken";
    }
}
