// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PortSettings.h"

#include <QObject>
#include <QSerialPort>
#include <QStringListModel>
#include <QtQmlIntegration>

/// Owns the serial port and moves lines, of whatever content: lists the ports, opens one, writes bytes, and cuts what
/// arrives into trimmed lines. There is one for the life of the program. What is virtual is so for a test that has no
/// port.
class SerialPortManager : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QStringListModel *portListModel READ ports NOTIFY portListModelChanged)

public:
    explicit SerialPortManager(QObject *parent = nullptr);

    [[nodiscard]] QStringListModel *ports() const { return portListModel; }

    /// Lists the ports anew: the system's, in its order, then the names and absolute paths under
    /// "Serial/extraPorts" in the config.ini of the working directory.
    Q_INVOKABLE void enumerate();

    /// Sets the parameters of the line, of the open port or of the next to be opened.
    void configure(const PortSettings &settings);
    /// Opens a port for reading and writing; what waited in it is thrown away. On failure serialError() tells the
    /// user, the process log why. False without a word if a port is open already.
    [[nodiscard]] virtual bool open(const QString &portName);
    /// Hands the bytes to the port. Whether they arrive only an answer can tell; a refusal goes to the process log.
    virtual void write(const QByteArray &data);
    virtual void close();
    [[nodiscard]] virtual bool isOpen() const { return m_port->isOpen(); }
    /// Whether the port was closed because the line is lost. True from serialError() until the next open() or close().
    [[nodiscard]] virtual bool isLineLost() const { return m_lineLost && !m_port->isOpen(); }

Q_SIGNALS:
    void portListModelChanged();
    /// One line arrived, trimmed and possibly empty. What is not UTF-8 is replaced by U+FFFD.
    void doneReading(QString data);
    /// A failure that the user must see, once for each: a port that cannot be opened, or a lost one, which is closed
    /// already when this is emitted.
    void serialError(QString error);

private Q_SLOTS:
    void onDataRead();
    void onSerialPortError(QSerialPort::SerialPortError error);

private:
    /// Whether a whole line waits in the port. Costs the same however long the line before its end has grown.
    [[nodiscard]] bool lineArrived();
    void onLineLost();

    QSerialPort *m_port = nullptr;
    QStringListModel *portListModel = nullptr;
    bool m_lineLost = false;
    int m_loggedErrors = 0;
};
