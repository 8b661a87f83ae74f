// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Every line from the device comes here: it is logged, classified and, if it is a response, applied to the models.

#include "ZepManager.h"

#include <QMetaEnum>

using namespace Qt::StringLiterals;

void ZepManager::onSerialRead(const QString &data)
{
    m_heldLines.append(data);
    deliverHeldLines();
}

void ZepManager::deliverHeldLines()
{
    // A line that has ended a wait lets the caller of that wait go on first: what it does with the answer, such as to
    // expect the result of a Tx, decides what the next line means.
    const auto callerGoesFirst = [this] { return m_waitDepth > 0 && !m_requestPending; };
    while (!m_heldLines.isEmpty() && !callerGoesFirst()) {
        if (m_txRequested && m_waitDepth > 0 && !m_tx->ackPending() && m_heldLines.constFirst().startsWith("+TX="_L1)) {
            m_requestPending = false; // as the "+OK" would, which is lost; the result follows when it is awaited
            continue;
        }
        processLine(m_heldLines.takeFirst());
    }
}

void ZepManager::processLine(const QString &data)
{
    if (!m_board || !m_atCmdHandler) {
        return;
    }
    m_logger->log(m_board->logSource(), data);

    if (data.contains("RANGER --"_L1)) {
        if (data.contains("BUTTON PUSHED"_L1)) {
            m_board->setIsAwake(true);
        } else if (data.contains("SLEEP"_L1)) {
            m_board->setIsAwake(false);
        } else if (data.contains("PARAMETERS RESTORED"_L1)) {
            setProcessingData(false, u"Configuration uploaded!"_s);
            m_logger->log(Logger::APP, u"Config uploaded successfully!"_s);
        }
        return;
    }
    if (!data.contains(u'+')) {
        return;
    }

    if (m_atCmdHandler->parseMessage(data, false)) {
        processResponse();
    } else {
        m_logger->log(Logger::APP, "Unable to parse message from "_L1 + m_board->name());
        if (m_atCmdHandler->paramCount() > 0 && m_atCmdHandler->param(0) == "NA"_L1) {
            m_logger->log(Logger::APP, "Unable to parse "_L1 + m_atCmdHandler->cmdName() + " data"_L1);
            if (m_atCmdHandler->cmdId() == AtCmdHandler::TX) {
                m_tx->onTxFailed(); // the result has come, though it cannot be read
            } else if (m_atCmdHandler->cmdId() == AtCmdHandler::ERROR) {
                processError(); // whatever its code
            }
        }
    }
    m_requestPending = false;
}

void ZepManager::processResponse()
{
    const AtCmdHandler &line = *m_atCmdHandler;
    switch (line.cmdId()) {
    case AtCmdHandler::OK:
    case AtCmdHandler::RX:
    case AtCmdHandler::BC:
    case AtCmdHandler::SATDET:
    case AtCmdHandler::RST:
        return; // the line is in the log already
    case AtCmdHandler::ERROR:
        m_logger->log(Logger::APP, line.errorString());
        processError();
        return;
    case AtCmdHandler::ID:
        m_board->setId(line.param(0));
        return;
    case AtCmdHandler::ADDR:
        m_board->setAddr(line.param(0));
        return;
    case AtCmdHandler::FW:
        m_board->setFirmwareVersion(line.param(0));
        return;
    case AtCmdHandler::SN:
        m_board->setSerialNumber(line.param(0));
        return;
    case AtCmdHandler::ATXFRQ:
        m_board->setTxFrequency(line.paramUInt(0));
        return;
    case AtCmdHandler::PWR:
        m_board->setTxPower(static_cast<ushort>(line.paramUInt(0)));
        return;
    case AtCmdHandler::AFMT:
        m_logger->log(Logger::APP, line.param(0).contains(u'0') ? u"Message format: Raw format"_s
                                                                : u"Message format: Sarvane standard format"_s);
        return;
    case AtCmdHandler::RCONF: {
        ModulationModel *modulation = m_tx->modulationModel();
        modulation->setFrequencyMin(line.paramUInt(1));
        modulation->setFrequencyMax(line.paramUInt(2));
        modulation->setPower(line.paramUInt(3));
        const int key = QMetaEnum::fromType<ModulationModel::Modulation>().keyToValue(line.param(4).toUtf8());
        modulation->setModulation(static_cast<ModulationModel::Modulation>(key));
        return;
    }
    case AtCmdHandler::TX:
    case AtCmdHandler::TXFIFO:
    case AtCmdHandler::ATXRP:
        processTxResponse();
        return;
    case AtCmdHandler::ASSERT:
        processDeviceAssertion();
        return;
    case AtCmdHandler::PREPASS_EN:
    case AtCmdHandler::PREPASS_CFG:
    case AtCmdHandler::POS:
    case AtCmdHandler::AOP:
    case AtCmdHandler::SAT:
    case AtCmdHandler::UDATE:
    case AtCmdHandler::NEXTPASS:
    case AtCmdHandler::ZEP_REDUN:
        processPredictionResponse();
        return;
    case AtCmdHandler::LORA_EN:
    case AtCmdHandler::LORA_REDUN:
    case AtCmdHandler::LORA_ACK:
    case AtCmdHandler::LORA_DEUI:
    case AtCmdHandler::LORA_AEUI:
    case AtCmdHandler::LORA_AKEY:
        processLoraResponse();
        return;
    case AtCmdHandler::PACQ:
    case AtCmdHandler::PACQ_SENS:
    case AtCmdHandler::ALRT_SENS:
    case AtCmdHandler::ALRT_LIGHT:
    case AtCmdHandler::ALRT_ACC:
    case AtCmdHandler::ALRT_DRYC:
    case AtCmdHandler::ALRT_PB:
        processSensorResponse();
        return;
    case AtCmdHandler::PING:
    case AtCmdHandler::SAVE_CFG:
    case AtCmdHandler::CW:
    case AtCmdHandler::TXDATA:
    case AtCmdHandler::ATXSTART:
    case AtCmdHandler::ZEP_TX:
        break;
    }
    m_logger->log(Logger::APP, u"Unsupported AT command"_s);
}

void ZepManager::processError()
{
    m_requestFailed = true;
    if (m_waitDepth == 0) {
        m_tx->onTxFailed(); // no request waits, so that the device speaks of the Tx in the air
    }
}
