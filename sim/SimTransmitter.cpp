// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SimTransmitter.h"

#include "SimPrediction.h"
#include "SimRadio.h"
#include "SimSettings.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int passWatchMs = 100;
constexpr int passLeadMs = 1000;    // a PC follows the pass by a clock that it has to the second only
constexpr uint attributeBits = 0x5; // mail and acknowledgement

constexpr Field hex{Field::Kind::Hex};

} // namespace

SimTransmitter::SimTransmitter(const SimRadio &radio, const SimSettings &settings, const SimPrediction &prediction,
                               int airtimeMs, QObject *parent)
    : QObject(parent), m_radio(radio), m_settings(settings), m_prediction(prediction), m_airtimeMs(airtimeMs)
{
    m_airTimer.setSingleShot(true);
    m_airTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_airTimer, &QTimer::timeout, this, &SimTransmitter::land);
    connect(&m_passTimer, &QTimer::timeout, this, &SimTransmitter::watchPasses);
}

std::vector<Command> SimTransmitter::commands()
{
    const Boards radioBoards = Board::Zep2 | Board::Tbx;
    const auto direct = [this](const QStringList &params) { return transmit(params, Source::Direct); };
    const auto silent = [this](const QStringList &params) { return transmit(params, Source::Silent); };
    // clang-format off
    return {
        // name, boards, parameters from, to, fields, query, set
        {QStringLiteral("TX"), Board::Zep1, 1, 1, {hex}, {}, direct},
        {QStringLiteral("TX"), radioBoards, 1, 2, {hex}, {}, direct},
        {QStringLiteral("ZEP_TX"), Board::Ranger, 1, 1, {hex}, {}, silent},
        {QStringLiteral("TXDATA"), radioBoards, 1, 2, {hex}, {},
         [this](const QStringList &params) { return enqueue(params); }},
        {QStringLiteral("TXFIFO"), radioBoards, 0, 0, {}, [this] { return listQueue(); },
         [this](const QStringList &) { reset(); return Answer::ok(); }},
        {QStringLiteral("ATXSTART"), radioBoards, 0, 0, {}, {},
         [this](const QStringList &) { return startQueue(); }},
    };
    // clang-format on
}

void SimTransmitter::reset()
{
    m_airTimer.stop();
    m_passTimer.stop();
    m_inAir.reset();
    m_fifo.clear();
    m_passBegun = {};
}

Answer SimTransmitter::transmit(const QStringList &params, Source source)
{
    SimFifo::Message message;
    const ErrorCode code = readMessage(params, message);
    if (code != ErrorCode::None) {
        return Answer::error(code);
    }
    if (m_inAir) {
        return Answer::error(ErrorCode::QueueFull);
    }
    takeOff(message, source);
    return Answer::ok([this] { beginAirtime(); });
}

Answer SimTransmitter::enqueue(const QStringList &params)
{
    SimFifo::Message message;
    const ErrorCode code = readMessage(params, message);
    if (code != ErrorCode::None) {
        return Answer::error(code);
    }
    if (!m_fifo.add(message)) {
        return Answer::error(ErrorCode::QueueFull);
    }
    return Answer::ok([this] { startWatching(); });
}

Answer SimTransmitter::listQueue() const
{
    Answer answer;
    const QStringList listing = m_fifo.listing() << QStringLiteral("end");
    for (const QString &text : listing) {
        answer.lines += Answer::value(QStringLiteral("TXFIFO"), text).lines;
    }
    return answer;
}

Answer SimTransmitter::startQueue()
{
    const auto waiting = m_fifo.next();
    if (!waiting) {
        return Answer::error(ErrorCode::QueueEmpty);
    }
    if (m_inAir) {
        return Answer::error(ErrorCode::QueueFull);
    }
    takeOff(*waiting, Source::Queue);
    return Answer::ok([this] { beginAirtime(); });
}

ErrorCode SimTransmitter::readMessage(const QStringList &params, SimFifo::Message &message) const
{
    message.data = params.first();
    if (params.size() > 1) {
        const QString &word = params.at(1);
        bool isHex = false;
        message.attribute = word.toUInt(&isHex, 16);
        if (!isHex || !word.startsWith(QLatin1String("0x"))) {
            return ErrorCode::Format;
        }
        if ((message.attribute & ~attributeBits) != 0) {
            return ErrorCode::Value;
        }
    }
    return m_radio.checkMessage(message.data, message.attribute != 0);
}

void SimTransmitter::takeOff(const SimFifo::Message &message, Source source)
{
    m_inAir = message;
    m_inAirSource = source;
}

void SimTransmitter::beginAirtime()
{
    if (!m_inAir) {
        return;
    }
    const int repetitions = m_inAirSource == Source::Silent ? 1 : m_settings.number(QStringLiteral("ATXRP"), 0);
    const qint64 periodMs = std::max(m_settings.number(QStringLiteral("ATXRP"), 1), m_airtimeMs);
    qint64 further = std::max(repetitions - 1, 0);
    const auto running = m_inAirSource == Source::Queue ? m_prediction.runningPass() : std::nullopt;
    if (running) {
        // Repetitions beyond the end of the pass would reach nobody.
        const qint64 spareMs = m_prediction.utcNow().msecsTo(running->pass.end) - m_airtimeMs;
        further = std::clamp<qint64>(spareMs / periodMs, 0, further);
    }
    m_airTimer.start(int(m_airtimeMs + further * periodMs));
}

void SimTransmitter::land()
{
    const SimFifo::Message message = *m_inAir;
    m_inAir.reset();
    if (m_inAirSource == Source::Silent) {
        return;
    }
    const int status = std::exchange(m_nextStatus, 0);
    if (status == 0 && m_inAirSource == Source::Queue) {
        m_fifo.markNextTransmitted();
    }
    Q_EMIT spoke(QStringLiteral("+TX=%1,%2").arg(status).arg(message.data));
    if (status == 0 && message.attribute != 0 && !m_replies.isEmpty()) {
        Q_EMIT spoke(QStringLiteral("+RX=") + m_replies.takeFirst());
    }
}

void SimTransmitter::startWatching()
{
    if (!m_passTimer.isActive()) {
        const auto running = m_prediction.runningPass();
        m_passBegun = running ? running->pass.start : QDateTime();
        m_passTimer.start(passWatchMs);
    }
}

void SimTransmitter::watchPasses()
{
    auto waiting = m_fifo.next();
    if (!waiting) {
        m_passTimer.stop();
        return;
    }
    if (m_settings.number(QStringLiteral("PREPASS_EN")) == 0) {
        return;
    }
    const auto running = m_prediction.runningPass();
    if (!running) {
        m_passBegun = {};
        return;
    }
    const Pass &pass = running->pass;
    if (!m_passBegun.isValid() || m_passBegun < pass.start) {
        m_passBegun = pass.start;
        m_fifo.plan(!std::exchange(m_skipsPass, false));
        waiting = m_fifo.next();
    }
    const QDateTime now = m_prediction.utcNow();
    const bool isInTime = pass.start.msecsTo(now) >= passLeadMs && now.msecsTo(pass.end) >= m_airtimeMs;
    if (!m_inAir && waiting->isPlanned && isInTime) {
        takeOff(*waiting, Source::Queue);
        beginAirtime();
    }
}
