// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Command.h"
#include "SimIdentity.h"
#include "SimPrediction.h"
#include "SimRadio.h"
#include "SimSettings.h"
#include "SimTransmitter.h"

#include <QObject>
#include <QSet>
#include <QTimer>

#include <map>

/// One board: its state, and its answer to each request. It knows lines, not the wire that carries them.
class SimDevice : public QObject
{
    Q_OBJECT

public:
    explicit SimDevice(const SimOptions &options, QObject *parent = nullptr);

    /// Answers one request line, given without its end. No lines if the device sleeps or restarts.
    [[nodiscard]] Answer request(const QString &line);
    /// Whether a request would be heard at all.
    [[nodiscard]] bool isListening() const { return m_awake && !m_restartTimer.isActive(); }

    [[nodiscard]] bool canSleep() const { return m_board == Board::Ranger; }
    void wakeUp();
    void fallAsleep();
    /// Says the device's last words and starts it again.
    void failAssertion(const QString &text);
    /// What the loss of its power leaves of the device: the settings in force, and a ranger asleep.
    void cutPower();

    // Faults of the device itself.
    /// The next restart is never reported.
    void loseRestart() { m_losesRestart = true; }
    /// Answers requests of \a word by an error from now on, or no longer so; false if the board does not know it.
    [[nodiscard]] bool toggleRefused(const QString &word);
    /// Falls asleep behind the answer to the \a count th setting from now on.
    void fallAsleepAfter(int count) { m_settingsUntilSleep = count; }

    void setFirmware(const QString &text) { m_firmware = text; }
    [[nodiscard]] SimTransmitter &transmitter() { return m_transmitter; }
    [[nodiscard]] SimPrediction &prediction() { return m_prediction; }

Q_SIGNALS:
    /// A line that no request asked for.
    void spoke(const QString &line);

private:
    void add(const std::vector<Command> &commands);
    [[nodiscard]] Answer run(const Command &command, const QString &data);
    void stayAwake();
    void restart();

    const Board m_board;
    QString m_firmware;
    SimIdentity m_identity;
    SimSettings m_settings;
    SimRadio m_radio;
    SimPrediction m_prediction;
    SimTransmitter m_transmitter;
    std::map<QString, Command> m_commands;
    QTimer m_restartTimer;
    QTimer m_sleepTimer;
    bool m_awake;
    bool m_losesRestart = false;
    int m_settingsUntilSleep = 0; ///< 0 for no such fault
    QSet<QString> m_refused;
};
