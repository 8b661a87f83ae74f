// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLocalServer>
#include <QObject>

#include <functional>

class QLocalSocket;

/// The line console on a local socket, for any number of clients; each answer goes to the one that asked.
class ConsoleServer : public QObject
{
    Q_OBJECT

public:
    using Execute = std::function<QString(const QString &)>;

    explicit ConsoleServer(Execute execute, QObject *parent = nullptr);

    /// Listens on the socket \a path and takes over what a dead simulator left there; false, with errorString() set,
    /// if a living one holds it or the system refuses. The socket goes with this object.
    [[nodiscard]] bool listen(const QString &path);
    [[nodiscard]] QString errorString() const { return m_errorString; }

private:
    void onNewConnection();
    void onReadable(QLocalSocket *client);

    Execute m_execute;
    QLocalServer m_server;
    QString m_errorString;
};
