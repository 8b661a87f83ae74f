// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "BulletinDocument.h"

#include <QObject>
#include <QTcpServer>

class QTcpSocket;

/// The operator's web service, on loopback: one request a connection, and the bulletin document at one path. The
/// query is not judged.
class BulletinServer : public QObject
{
    Q_OBJECT

public:
    explicit BulletinServer(std::vector<FleetSatellite> satellites, QObject *parent = nullptr);

    /// Listens on \a port, 0 for any that is free; false, with errorString() set, if it cannot.
    [[nodiscard]] bool listen(quint16 port);
    [[nodiscard]] QString errorString() const { return m_server.errorString(); }
    /// Address of the document, without a query.
    [[nodiscard]] QString url() const;

    /// How requests are answered from now on.
    void setMode(BulletinMode mode) { m_mode = mode; }

Q_SIGNALS:
    /// A whole request has come in; its first line.
    void requested(const QString &line);

private:
    void onReadable(QTcpSocket *client);
    [[nodiscard]] QByteArray answerTo(const QByteArray &requestLine) const;

    const std::vector<FleetSatellite> m_satellites;
    BulletinMode m_mode = BulletinMode::Ok;
    QTcpServer m_server;
};
