// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The LoRa settings of a device that has the stack, and its answers to them.

#include "LoRaConnectivity.h"
#include "ZepManager.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {
constexpr int euiByteCount = 8;
constexpr int keyByteCount = 16;

/// The bytes of a line without their separators; null if there are not \a byteCount of them.
QString joinedBytes(const AtCmdHandler &line, int byteCount)
{
    if (line.paramCount() != byteCount + 1) {
        return {};
    }
    QString bytes;
    for (int index = 1; index <= byteCount; ++index) {
        bytes += line.param(static_cast<uchar>(index));
    }
    return bytes;
}
} // namespace

bool ZepManager::hasLoRa() const
{
    if (m_board && m_board->loraCompatible() && m_board->loraStackIntegrated()) {
        return true;
    }
    m_logger->log(Logger::APP, u"LORA CONFIG: This board is not compatible with LoRa"_s);
    return false;
}

void ZepManager::getLoRaConfig()
{
    static constexpr Question questions[] = {
        // command                  failure
        {AtCmdHandler::LORA_EN, "Unable to get LoRa connectivity status"},
        {AtCmdHandler::LORA_REDUN, "Unable to get LoRa message redundancy"},
        {AtCmdHandler::LORA_DEUI, "Unable to get LoRa device EUI"},
        {AtCmdHandler::LORA_AEUI, "Unable to get LoRa App EUI"},
        {AtCmdHandler::LORA_AKEY, "Unable to get LoRa App key"},
        {AtCmdHandler::LORA_ACK, "Unable to get LoRa ack status"},
    };
    if (hasLoRa() && wakeUpBoard()) {
        ask(questions);
    }
}

bool ZepManager::setLoRaConfig()
{
    if (!hasLoRa()) {
        return false;
    }
    const LoRaConnectivity *config = m_tx->loraConfig();
    const bool succeeded =
        sendCommand(AtCmdHandler::LORA_AEUI, {LoRaConnectivity::toWireHex(config->appEui())}, shortTimeout) &&
        sendCommand(AtCmdHandler::LORA_AKEY, {LoRaConnectivity::toWireHex(config->appKey())}, shortTimeout) &&
        sendCommand(AtCmdHandler::LORA_ACK, {QString::number(config->ackEnabled() ? 1 : 0)}, shortTimeout) &&
        sendCommand(AtCmdHandler::LORA_REDUN, {QString::number(config->redundancy())}, shortTimeout);
    if (!succeeded && m_board) {
        m_logger->log(Logger::APP, u"Unable to set LoRa configuration"_s);
    }
    return succeeded;
}

bool ZepManager::setLoRaEnable()
{
    return sendCommand(AtCmdHandler::LORA_EN, {QString::number(m_tx->loraEnabled() ? 1 : 0)}, shortTimeout);
}

void ZepManager::processLoraResponse()
{
    const AtCmdHandler &line = *m_atCmdHandler;
    LoRaConnectivity *config = m_tx->loraConfig();
    switch (line.cmdId()) {
    case AtCmdHandler::LORA_EN:
        m_tx->setLoraEnabled(line.paramUInt(0) == 1);
        return;
    case AtCmdHandler::LORA_REDUN:
        config->setRedundancy(static_cast<uchar>(qMin(line.paramUInt(0), quint32{std::numeric_limits<uchar>::max()})));
        return;
    case AtCmdHandler::LORA_ACK:
        config->setAckEnabled(line.paramUInt(0) == 1);
        return;
    case AtCmdHandler::LORA_AKEY: {
        const QString key = joinedBytes(line, keyByteCount);
        if (key.isNull()) {
            m_logger->log(Logger::APP, u"Invalid key value!"_s);
        } else {
            config->setAppKey(key);
        }
        return;
    }
    default: {
        const QString eui = joinedBytes(line, euiByteCount);
        if (eui.isNull()) {
            m_logger->log(Logger::APP, u"Invalid EUI value!"_s);
        } else if (line.cmdId() == AtCmdHandler::LORA_DEUI) {
            config->setDevEui(eui);
        } else {
            config->setAppEui(eui);
        }
        return;
    }
    }
}
