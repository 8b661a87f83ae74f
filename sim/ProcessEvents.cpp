// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ProcessEvents.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

std::array<int, 2> signalPipe{-1, -1};

extern "C" void onTerminationSignal(int)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[1], &byte, 1);
}

} // namespace

StandardInput::StandardInput(QObject *parent)
    : QObject(parent), m_notifier(new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this))
{
    connect(m_notifier, &QSocketNotifier::activated, this, &StandardInput::onReadable);
}

void StandardInput::onReadable()
{
    std::array<char, 4096> buffer;
    const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count <= 0) {
        m_notifier->setEnabled(false);
        return;
    }
    m_buffer.append(buffer.data(), count);
    for (auto end = m_buffer.indexOf('\n'); end >= 0; end = m_buffer.indexOf('\n')) {
        const QString line = QString::fromUtf8(m_buffer.left(end)).trimmed();
        m_buffer.remove(0, end + 1);
        Q_EMIT lineRead(line);
    }
}

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent)
{
    if (::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals then end the process as they do without us
    }
    auto *notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        Q_EMIT terminated();
    });
    struct sigaction action
    {
    };
    action.sa_handler = onTerminationSignal;
    sigemptyset(&action.sa_mask);
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN); // a reader of the output that goes away does not end the device
}
