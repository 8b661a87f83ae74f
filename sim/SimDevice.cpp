// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SimDevice.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int restartMs = 300;

bool isCommandWord(QStringView word)
{
    return !word.isEmpty() &&
           std::all_of(word.cbegin(), word.cend(), [](QChar c) { return (c >= u'A' && c <= u'Z') || c == u'_'; });
}

} // namespace

SimDevice::SimDevice(const SimOptions &options, QObject *parent)
    : QObject(parent)
    , m_board(options.board)
    , m_firmware(factoryFirmware(options.board))
    , m_identity(options.seed)
    , m_settings(options.board, options.seed)
    , m_radio(options.board)
    , m_prediction(m_settings, options.seed)
    , m_transmitter(m_radio, m_settings, m_prediction, options.airtimeMs)
    , m_awake(!canSleep())
{
    const Boards all = Board::Zep1 | Board::Zep2 | Board::Tbx | Board::Ranger;
    const auto acknowledge = [] { return Answer::ok(); };
    const auto acknowledgeSet = [](const QStringList &) { return Answer::ok(); };
    const auto restartAfterwards = [this](const QStringList &) {
        return Answer::ok([this] {
            m_settings.apply();
            restart();
        });
    };
    add({
        // name, boards, parameters from, to, fields, query, set
        {QStringLiteral("PING"), all, 0, 0, {}, acknowledge, acknowledgeSet},
        // Every setting outlives the power, or else waits for the restart.
        {QStringLiteral("SAVE_CFG"), all, 0, 0, {}, acknowledge, acknowledgeSet},
        {QStringLiteral("RST"), all, 0, 0, {}, {}, restartAfterwards},
    });
    add(m_identity.commands(m_firmware));
    add(m_settings.commands());
    add(m_radio.commands());
    add(m_prediction.commands());
    add(m_transmitter.commands());
    connect(&m_transmitter, &SimTransmitter::spoke, this, &SimDevice::spoke);

    m_restartTimer.setSingleShot(true);
    m_restartTimer.setInterval(restartMs);
    connect(&m_restartTimer, &QTimer::timeout, this, [this] {
        if (canSleep() && !std::exchange(m_losesRestart, false)) {
            Q_EMIT spoke(QStringLiteral("RANGER -- PARAMETERS RESTORED"));
        }
        stayAwake();
    });
    m_sleepTimer.setSingleShot(true);
    m_sleepTimer.setInterval(options.awakeMs);
    connect(&m_sleepTimer, &QTimer::timeout, this, &SimDevice::fallAsleep);
}

Answer SimDevice::request(const QString &line)
{
    if (!isListening()) {
        return {};
    }
    stayAwake();
    if (!line.startsWith(QLatin1String("AT+"))) {
        return Answer::error(ErrorCode::UnknownCommand);
    }
    const auto equals = line.indexOf(u'=');
    const QString word = line.mid(3, equals < 0 ? -1 : equals - 3);
    if (!isCommandWord(word)) {
        return Answer::error(ErrorCode::InvalidCommandWord);
    }
    const auto command = m_commands.find(word);
    if (command == m_commands.cend()) {
        return Answer::error(ErrorCode::UnknownCommand);
    }
    return equals < 0 ? Answer::error(ErrorCode::MissingParameters) : run(command->second, line.mid(equals + 1));
}

Answer SimDevice::run(const Command &command, const QString &data)
{
    Answer answer = m_refused.contains(command.name) ? Answer::error(ErrorCode::Value) : command.run(data);
    if (data != QLatin1String("?") && m_settingsUntilSleep > 0 && --m_settingsUntilSleep == 0) {
        answer.afterwards = [this] { fallAsleep(); };
    }
    return answer;
}

bool SimDevice::toggleRefused(const QString &word)
{
    if (m_commands.find(word) == m_commands.cend()) {
        return false;
    }
    if (!m_refused.remove(word)) {
        m_refused.insert(word);
    }
    return true;
}

void SimDevice::stayAwake()
{
    if (canSleep()) {
        m_sleepTimer.start();
    }
}

void SimDevice::wakeUp()
{
    m_awake = true;
    stayAwake();
    Q_EMIT spoke(QStringLiteral("RANGER -- BUTTON PUSHED"));
}

void SimDevice::fallAsleep()
{
    m_awake = false;
    m_sleepTimer.stop();
    Q_EMIT spoke(QStringLiteral("RANGER -- SLEEP"));
}

void SimDevice::failAssertion(const QString &text)
{
    Q_EMIT spoke(QStringLiteral("+ASSERT=") + text);
    m_settings.forget();
    restart();
}

void SimDevice::cutPower()
{
    m_transmitter.reset();
    m_settings.forget();
    m_restartTimer.stop();
    m_sleepTimer.stop();
    m_awake = !canSleep();
}

void SimDevice::add(const std::vector<Command> &commands)
{
    for (const Command &command : commands) {
        if (command.boards.testFlag(m_board)) {
            m_commands.emplace(command.name, command);
        }
    }
}

void SimDevice::restart()
{
    m_transmitter.reset();
    m_restartTimer.start();
}
