// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ScriptedPeer.h"

ScriptedPeer::ScriptedPeer(QObject *parent) : QObject(parent)
{
    connect(&m_terminal, &PseudoTerminal::received, this, &ScriptedPeer::onReceived);
    plugAgain();
}

void ScriptedPeer::plugAgain()
{
    if (!m_terminal.open()) {
        qFatal("no pseudo terminal: %s", qPrintable(m_terminal.errorString()));
    }
}

void ScriptedPeer::answer(const QString &request, const QStringList &lines)
{
    m_answers[request] = lines;
}

void ScriptedPeer::say(const QByteArray &line)
{
    m_terminal.write(line + "\r\n");
}

void ScriptedPeer::onReceived(const QByteArray &data)
{
    m_incoming += data;
    for (qsizetype end = m_incoming.indexOf("\r\n"); end >= 0; end = m_incoming.indexOf("\r\n")) {
        const QString request = QString::fromLatin1(m_incoming.first(end));
        m_incoming.remove(0, end + 2);
        m_requests << request;
        const QStringList answers = m_answers.value(request, m_answers.value(request.section('=', 0, 0) + "=*"));
        for (const QString &line : answers) {
            say(line.toUtf8());
        }
        Q_EMIT requested(request);
    }
}
