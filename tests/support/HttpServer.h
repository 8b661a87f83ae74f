// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>

/// A web server on loopback that answers every request with the same bytes, or with nothing, which is silence.
class HttpServer
{
public:
    explicit HttpServer(std::unique_ptr<QTcpServer> listener = std::make_unique<QTcpServer>())
        : m_listener(std::move(listener))
    {
        if (!m_listener->listen(QHostAddress::LocalHost)) {
            qFatal("no port: %s", qPrintable(m_listener->errorString()));
        }
        QObject::connect(m_listener.get(), &QTcpServer::pendingConnectionAvailable, m_listener.get(), [this] {
            QTcpSocket *socket = m_listener->nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                requests << QString::fromUtf8(socket->readLine().trimmed());
                socket->readAll();
                if (!answer.isNull()) {
                    socket->write(answer);
                }
                if (!answer.isNull() && !keepOpen) {
                    socket->disconnectFromHost();
                }
            });
        });
    }

    void serve(const char *status, const QByteArray &body)
    {
        answer = QByteArray("HTTP/1.1 ") + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                 "\r\nConnection: close\r\n\r\n" + body;
    }

    [[nodiscard]] quint16 port() const { return m_listener->serverPort(); }
    [[nodiscard]] QString url(const QString &scheme = "http", const QString &target = "/") const
    {
        return scheme + "://127.0.0.1:" + QString::number(port()) + target;
    }

    QByteArray answer;
    bool keepOpen = false; ///< The connection, after the answer
    QStringList requests;  ///< The first line of each

private:
    std::unique_ptr<QTcpServer> m_listener;
};
