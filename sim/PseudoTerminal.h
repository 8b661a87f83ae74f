// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

class QSocketNotifier;

/// One pseudo terminal, seen from the device's side: what a client that opens path() writes arrives here, and what
/// is written here arrives there. The slave is raw from the start and held open, so nothing echoes and bytes sent
/// before a client opens wait for it.
class PseudoTerminal : public QObject
{
    Q_OBJECT

public:
    explicit PseudoTerminal(QObject *parent = nullptr);
    ~PseudoTerminal() override;

    /// Creates the terminal; false, with errorString() set, if the system refuses.
    [[nodiscard]] bool open();
    /// Closes both sides: an open client sees the line hang up.
    void close();
    [[nodiscard]] bool isOpen() const { return m_master >= 0; }
    /// Absolute path of the slave, such as /dev/pts/3; empty while closed.
    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QString errorString() const { return m_errorString; }

    /// Queues \a data toward the client. Writes as much as the terminal takes and the rest when it takes more.
    void write(const QByteArray &data);
    /// Bytes that wait to be taken by the terminal.
    [[nodiscard]] qsizetype bytesToWrite() const { return m_outgoing.size(); }

Q_SIGNALS:
    void received(const QByteArray &data);
    void bytesWritten();

private:
    void onReadable();
    void onWritable();

    int m_master = -1;
    int m_slave = -1;
    QString m_path;
    QString m_errorString;
    QByteArray m_outgoing;
    QSocketNotifier *m_readNotifier = nullptr;
    QSocketNotifier *m_writeNotifier = nullptr;
};
