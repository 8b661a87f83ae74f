// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OpenWatcher.h"

#include <QFile>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

OpenWatcher::OpenWatcher(QObject *parent) : QObject(parent), m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (m_descriptor >= 0) {
        m_notifier = new QSocketNotifier(m_descriptor, QSocketNotifier::Read, this);
        connect(m_notifier, &QSocketNotifier::activated, this, &OpenWatcher::onReadable);
    }
}

OpenWatcher::~OpenWatcher()
{
    delete m_notifier;
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

bool OpenWatcher::watch(const QString &path)
{
    if (m_watch >= 0) {
        inotify_rm_watch(m_descriptor, m_watch); // fails if the path is gone, and the watch with it
    }
    m_watch = inotify_add_watch(m_descriptor, QFile::encodeName(path).constData(), IN_OPEN);
    if (m_watch < 0) {
        m_errorString = QStringLiteral("Cannot watch %1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
    }
    return m_watch >= 0;
}

void OpenWatcher::onReadable()
{
    std::array<char, 4096> buffer;
    bool isOpening = false;
    ssize_t count = 0;
    while ((count = ::read(m_descriptor, buffer.data(), buffer.size())) > 0) {
        for (ssize_t offset = 0; offset < count;) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + offset, sizeof event);
            isOpening = isOpening || (event.wd == m_watch && (event.mask & IN_OPEN) != 0);
            offset += ssize_t(sizeof event) + ssize_t(event.len);
        }
    }
    if (isOpening) {
        Q_EMIT opened();
    }
}
