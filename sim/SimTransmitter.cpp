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
    return Answer::ok([this] { m_passTimer.start(passWatchMs); });
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
        const QString word = params.at(1);
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
    const int repetitions = m_inAirSource == Source::Silent ? 0 : m_settings.number(QStringLiteral("ATXRP"), 0);
    const int periodMs = m_settings.number(QStringLiteral("ATXRP"), 1);
    qint64 length = m_airtimeMs + qint64(std::max(repetitions - 1, 0)) * std::max(periodMs, m_airtimeMs);
    const qint64 passLeft = m_prediction.passLeftMs();
    if (m_inAirSource == Source::Queue && passLeft > 0) {
        // Repetitions beyond the end of the pass would reach nobody.
        length = std::min(length, std::max<qint64>(passLeft, m_airtimeMs));
    }
    m_airTimer.start(int(length));
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

void SimTransmitter::watchPasses()
{
    const auto waiting = m_fifo.next();
    if (!waiting) {
        m_passTimer.stop();
        return;
    }
    if (!m_inAir && m_settings.number(QStringLiteral("PREPASS_EN")) != 0 && m_prediction.passLeftMs() > 0) {
        takeOff(*waiting, Source::Queue);
        beginAirtime();
    }
}
