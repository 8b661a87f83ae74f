// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PortWatcher.h"

#include <QFileInfo>

PortWatcher::PortWatcher(QObject *parent, const QString &folder) : QObject(parent)
{
    const bool hasFolder = QFileInfo(folder).isDir() && m_watcher.addPath(folder);
    m_timer.setSingleShot(hasFolder);
    m_timer.setInterval(hasFolder ? settleTime : lookInterval);
    connect(&m_timer, &QTimer::timeout, this, &PortWatcher::changed);
    if (hasFolder) {
        connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_timer, qOverload<>(&QTimer::start));
    } else {
        m_timer.start();
    }
}
