// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PseudoTerminal.h"

#include <QFile>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

PseudoTerminal::PseudoTerminal(QObject *parent) : QObject(parent) {}

PseudoTerminal::~PseudoTerminal()
{
    close();
}

bool PseudoTerminal::open()
{
    close();
    m_master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    std::array<char, 128> name{};
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0 ||
        ptsname_r(m_master, name.data(), name.size()) != 0) {
        m_errorString = QString::fromLocal8Bit(std::strerror(errno));
        close();
        return false;
    }
    m_slave = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    if (m_slave < 0 || tcgetattr(m_slave, &settings) != 0) {
        m_errorString = QString::fromLocal8Bit(std::strerror(errno));
        close();
        return false;
    }
    cfmakeraw(&settings);
    tcsetattr(m_slave, TCSANOW, &settings);
    m_path = QFile::decodeName(name.data());

    m_readNotifier = new QSocketNotifier(m_master, QSocketNotifier::Read, this);
    connect(m_readNotifier, &QSocketNotifier::activated, this, &PseudoTerminal::onReadable);
    m_writeNotifier = new QSocketNotifier(m_master, QSocketNotifier::Write, this);
    m_writeNotifier->setEnabled(false);
    connect(m_writeNotifier, &QSocketNotifier::activated, this, &PseudoTerminal::onWritable);
    return true;
}

void PseudoTerminal::close()
{
    if (m_readNotifier) { // whoever closes may be called by it
        m_readNotifier->setEnabled(false);
        m_readNotifier->deleteLater();
    }
    m_readNotifier = nullptr;
    delete m_writeNotifier;
    m_writeNotifier = nullptr;
    if (m_slave >= 0) {
        ::close(m_slave);
    }
    if (m_master >= 0) {
        ::close(m_master);
    }
    m_slave = -1;
    m_master = -1;
    m_path.clear();
    m_outgoing.clear();
}

void PseudoTerminal::write(const QByteArray &data)
{
    if (m_master < 0) {
        return;
    }
    m_outgoing += data;
    onWritable();
}

void PseudoTerminal::onReadable()
{
    std::array<char, 4096> buffer;
    const ssize_t count = ::read(m_master, buffer.data(), buffer.size());
    if (count > 0) {
        Q_EMIT received(QByteArray(buffer.data(), count));
    }
}

void PseudoTerminal::onWritable()
{
    qsizetype done = 0;
    while (done < m_outgoing.size()) {
        const ssize_t count = ::write(m_master, m_outgoing.constData() + done, size_t(m_outgoing.size() - done));
        if (count <= 0) {
            break;
        }
        done += count;
    }
    m_outgoing.remove(0, done);
    m_writeNotifier->setEnabled(!m_outgoing.isEmpty());
    if (done > 0) {
        Q_EMIT bytesWritten();
    }
}
