// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ConsoleServer.h"

#include <QLocalSocket>

ConsoleServer::ConsoleServer(Execute execute, QObject *parent) : QObject(parent), m_execute(std::move(execute))
{
    connect(&m_server, &QLocalServer::newConnection, this, &ConsoleServer::onNewConnection);
}

bool ConsoleServer::listen(const QString &path)
{
    constexpr int probeMs = 200;
    QLocalSocket probe;
    probe.connectToServer(path);
    if (probe.waitForConnected(probeMs)) {
        m_errorString = QStringLiteral("%1: another simulator listens there").arg(path);
        return false;
    }
    if (probe.error() == QLocalSocket::ConnectionRefusedError) {
        QLocalServer::removeServer(path);
    }
    if (!m_server.listen(path)) {
        m_errorString = path + QStringLiteral(": ") + m_server.errorString();
        return false;
    }
    return true;
}

void ConsoleServer::onNewConnection()
{
    while (QLocalSocket *client = m_server.nextPendingConnection()) {
        connect(client, &QLocalSocket::readyRead, this, [this, client] { onReadable(client); });
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        onReadable(client);
    }
}

void ConsoleServer::onReadable(QLocalSocket *client)
{
    while (client->canReadLine()) {
        const QString line = QString::fromUtf8(client->readLine()).trimmed();
        client->write(m_execute(line).toUtf8() + '\n');
    }
    client->flush();
}
