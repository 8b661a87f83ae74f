// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ListedPort.h"
#include "PortSettings.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSerialPort>
#include <QStringListModel>
#include <QtQmlIntegration>

#include <functional>

class PortWatcher;

/// Owns the serial port and moves lines, of whatever content: lists the ports, opens one, writes bytes, and cuts what
/// arrives into trimmed lines. There is one for the life of the program. What is virtual is so for a test that has no
/// port.
class SerialPortManager : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QStringListModel *portListModel READ ports NOTIFY portListModelChanged)
    Q_PROPERTY(QString lastPort READ lastPort NOTIFY portListModelChanged)
    Q_PROPERTY(QString openHelp READ openHelp NOTIFY serialError)

public:
    explicit SerialPortManager(QObject *parent = nullptr);

    [[nodiscard]] QStringListModel *ports() const { return portListModel; }

    /// Lists the ports anew: the system's, in its order, then the names and absolute paths under
    /// "Serial/extraPorts" in the config.ini of the working directory.
    Q_INVOKABLE void enumerate();
    /// From now on the list follows adapters that appear and vanish while no port is open.
    Q_INVOKABLE void followAdapters();
    /// The row of a port in the list, -1 if it is not there.
    Q_INVOKABLE [[nodiscard]] int rowOf(const QString &portName) const;
    /// The port in a row of the list; empty if there is none.
    Q_INVOKABLE [[nodiscard]] QString portAt(int row) const { return portListModel->stringList().value(row); }
    /// The port of the last session by the name that it has in the list now; empty if it is not there.
    [[nodiscard]] QString lastPort() const;
    /// Stores \a portName and its adapter as the port of the last session.
    void rememberPort(const QString &portName);
    /// Replaces the system's list, for a test that has no adapters.
    void setSystemPorts(const std::function<QList<ListedPort>()> &list);

    /// What the user can do about the failure that serialError() has just reported; empty for want of a known remedy.
    [[nodiscard]] QString openHelp() const { return m_openHelp; }

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
    void onPortsChanged();
    [[nodiscard]] bool answersStatusQuery();
    [[nodiscard]] bool isLost(QSerialPort::SerialPortError error);
    /// Whether a whole line waits in the port. Costs the same however long the line before its end has grown.
    [[nodiscard]] bool lineArrived();
    void onLineLost();

    QSerialPort *m_port = nullptr;
    QStringListModel *portListModel = nullptr;
    PortWatcher *m_watcher = nullptr;
    std::function<QList<ListedPort>()> m_systemPorts = &ListedPort::ofSystem;
    QList<ListedPort> m_listed; ///< the last answer of m_systemPorts
    QString m_openHelp;
    bool m_lineLost = false;
    // What held when the port was opened, for the look at a port that reports an error.
    QString m_listedAs; // empty for a port of config.ini
    bool m_answeredStatusQuery = false;
    bool m_queryingStatus = false;
    QElapsedTimer m_sinceLook;
    int m_loggedErrors = 0;
};
