// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LocalPath.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

QString localPath(const QString &fileUrl)
{
    return QDir::isAbsolutePath(fileUrl) ? fileUrl : QUrl(fileUrl).toLocalFile();
}

bool isOtherThanFile(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile();
}
