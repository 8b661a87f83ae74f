// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "BulletinDocument.h"
#include "Options.h"
#include "WirePacer.h"

#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

class BulletinServer;
class ConsoleServer;
class OpenWatcher;
class PseudoTerminal;
class SimConsole;
class SimDevice;
class Trace;

/// A device on the far end of a pseudo terminal, for the program zepsim and for tests in one process with it. It
/// lives from the event loop alone.
class Simulator : public QObject
{
    Q_OBJECT

public:
    explicit Simulator(const SimOptions &options, QObject *parent = nullptr);
    /// Hangs up and removes the link and the console's socket.
    ~Simulator() override;

    /// Makes port, link, trace, console and web service; false, with errorString() set, if one cannot be made.
    [[nodiscard]] bool start();
    [[nodiscard]] QString errorString() const { return m_errorString; }
    /// Absolute path of the port; empty while unplugged. It changes with each plug; the link does not.
    [[nodiscard]] QString portPath() const;
    /// Address of the bulletin document; empty if it is not served.
    [[nodiscard]] QString bulletinUrl() const;
    /// Carries out one console line. The answer is "ok" or "error: " and the reason, for "help" with text before it.
    QString execute(const QString &consoleLine);
    [[nodiscard]] SimDevice &device() { return *m_device; }

    // What the console does to the wire. Each fault is for the requests or the answer to come, and is then spent.
    void setNextError(int code) { m_faults.error = code; }
    void setMute(int requests) { m_faults.muted = requests; }
    void setNextLate(int ms) { m_faults.lateMs = ms; }
    void setNextSplit() { m_faults.split = true; }
    /// Carries out the console line, once, when the next request that begins with the text comes in, before it is
    /// heard.
    void addOrder(const QString &request, const QString &consoleLine) { m_orders.push_back({request, consoleLine}); }
    /// Sends bytes none of which is UTF-8, and a line end.
    void sendGarbage(int count);
    /// Sends a line that no request asked for.
    void speak(const QString &line);
    /// Hangs the port up and cuts the device's power.
    void unplug();
    /// Makes a new port and moves the link to it.
    [[nodiscard]] bool plug();
    [[nodiscard]] bool isPlugged() const;
    /// False if bulletins are not served.
    [[nodiscard]] bool setBulletinMode(BulletinMode mode);

Q_SIGNALS:
    /// A port was made, at the start and at each plug.
    void plugged(const QString &path);
    /// A request line came in, heard by the device or not.
    void requestReceived(const QString &line);
    /// The console asked for the end.
    void quitRequested();

private:
    struct Faults
    {
        std::optional<int> error;
        int muted = 0;
        int lateMs = 0;
        bool split = false;
    };
    struct Order
    {
        QString request;
        QString consoleLine;
    };
    struct DelayedAnswer
    {
        QStringList lines;
        std::function<void()> afterwards;
        qint64 dueMs = 0;
        bool split = false;
    };

    void onReceived(const QByteArray &data);
    void onRequest(const QByteArray &line);
    void carryOutOrders(const QString &request);
    void onClientOpened();
    void sendDueAnswers();
    void sendLine(const QByteArray &line, bool split, std::function<void()> sent = {});
    [[nodiscard]] bool makeLink();
    void removeLink();

    const SimOptions m_options;
    QString m_errorString;
    std::unique_ptr<Trace> m_trace;
    std::unique_ptr<SimDevice> m_device;
    std::unique_ptr<PseudoTerminal> m_port;
    std::unique_ptr<SimConsole> m_console;
    std::unique_ptr<ConsoleServer> m_consoleServer;
    std::unique_ptr<BulletinServer> m_bulletinServer;
    std::unique_ptr<OpenWatcher> m_openWatcher;
    WirePacer m_pacer;
    QByteArray m_incoming;
    bool m_overlong = false; ///< the line that is coming in is longer than the device can hold
    std::deque<DelayedAnswer> m_answers;
    QTimer m_answerTimer;
    QTimer m_autoWakeTimer;
    Faults m_faults;
    std::vector<Order> m_orders;
};
