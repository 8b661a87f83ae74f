// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "BulletinServer.h"

#include <QTcpSocket>

namespace {

constexpr qint64 requestCapacity = qint64{16} * 1024; // bytes of a request's head
constexpr char documentPath[] = "/mdr/resources/fleetfeed";

QByteArray response(const QByteArray &status, const QByteArray &body)
{
    return "HTTP/1.1 " + status +
           "\r\nContent-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

} // namespace

BulletinServer::BulletinServer(std::vector<FleetSatellite> satellites, QObject *parent)
    : QObject(parent), m_satellites(std::move(satellites))
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *client = m_server.nextPendingConnection()) {
            connect(client, &QTcpSocket::readyRead, this, [this, client] { onReadable(client); });
            connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
        }
    });
}

bool BulletinServer::listen(quint16 port)
{
    return m_server.listen(QHostAddress::LocalHost, port);
}

QString BulletinServer::url() const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(QLatin1String(documentPath));
}

void BulletinServer::onReadable(QTcpSocket *client)
{
    // The whole head at once, so that a client that sends it in pieces is answered once.
    const QByteArray head = client->peek(requestCapacity);
    if (!head.contains("\r\n\r\n")) {
        if (head.size() >= requestCapacity) {
            client->abort();
        }
        return;
    }
    client->readAll();
    const QByteArray line = head.left(head.indexOf("\r\n"));
    Q_EMIT requested(QString::fromLatin1(line));
    if (m_mode != BulletinMode::Silent) {
        client->write(answerTo(line));
        client->disconnectFromHost();
    }
}

QByteArray BulletinServer::answerTo(const QByteArray &requestLine) const
{
    const QList<QByteArray> words = requestLine.split(' ');
    if (words.first() != "GET") {
        return response("405 Method Not Allowed", {});
    }
    const QByteArray target = words.value(1);
    if (target != documentPath && !target.startsWith(QByteArray(documentPath) + '?')) {
        return response("404 Not Found", {});
    }
    if (m_mode == BulletinMode::Status500) {
        return response("500 Internal Server Error", "the feed is down\n");
    }
    if (m_mode == BulletinMode::Empty) {
        return response("200 OK", {});
    }
    return response("200 OK", bulletinDocument(m_satellites, QDateTime::currentDateTimeUtc(), m_mode));
}
