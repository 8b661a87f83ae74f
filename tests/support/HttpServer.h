// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <utility>

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

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
                socket->write(answer);
            });
            QObject::connect(socket, &QTcpSocket::bytesWritten, socket, [this, socket] {
                if (socket->bytesToWrite() == 0 && filler > 0) {
                    filler -= socket->write(QByteArray(chunk, ' '));
                }
            });
        });
    }

    /// A null \a body is silence.
    void serve(const QByteArray &status, const QByteArray &body)
    {
        const QByteArray length = "\r\nContent-Length: " + QByteArray::number(body.size());
        answer = body.isNull() ? QByteArray() : "HTTP/1.1 " + status + length + "\r\n\r\n" + body;
    }

    [[nodiscard]] quint16 port() const { return m_listener->serverPort(); }
    [[nodiscard]] QString url(const QString &scheme = "http", const QString &target = "/") const
    {
        return scheme + "://127.0.0.1:" + QString::number(port()) + target;
    }

    QByteArray answer;
    qint64 filler = 0;    ///< Bytes of blanks that follow the answer, as fast as they are taken
    QStringList requests; ///< The first line of each

private:
    static constexpr qsizetype chunk = 65536;
    std::unique_ptr<QTcpServer> m_listener;
};
