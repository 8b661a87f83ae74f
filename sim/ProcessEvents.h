// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QObject>

class QSocketNotifier;

/// The lines that come in on standard input. Its end stops the reading and nothing else.
class StandardInput : public QObject
{
    Q_OBJECT

public:
    explicit StandardInput(QObject *parent = nullptr);

Q_SIGNALS:
    void lineRead(const QString &line);

private:
    void onReadable();

    QByteArray m_buffer;
    QSocketNotifier *m_notifier;
};

/// SIGTERM and SIGINT as a signal in the event loop.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);

Q_SIGNALS:
    void terminated();
};
