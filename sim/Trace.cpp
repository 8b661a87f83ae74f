// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Trace.h"

bool Trace::open(const QString &path)
{
    m_file.setFileName(path);
    m_clock.start();
    return m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
}

void Trace::write(char direction, const QByteArray &line)
{
    if (!m_file.isOpen()) {
        return;
    }
    QByteArray text = QByteArray::number(m_clock.elapsed()) + ' ' + direction + ' ';
    for (const char byte : line) {
        const bool isShown = byte >= ' ' && byte <= '~' && byte != '\\';
        text += isShown ? QByteArray(1, byte) : "\\x" + QByteArray(1, byte).toHex();
    }
    m_file.write(text + '\n');
}
