// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The device's side of a transmission: the commands that a payload becomes on each board and profile, and the
// device's answers to them.

#include "Assertion.h"
#include "Clock.h"
#include "ProcessLog.h"
#include "ZepManager.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace {
constexpr int attributeAck = 4;
constexpr int attributeMail = 1;
constexpr int moduleRepetition = 4;
constexpr int moduleRepetitionImportant = 10;
constexpr int moduleRepetitionPeriod = 60000; // ms
} // namespace

bool ZepManager::requestTx(const QString &data, const Payload::Options &options, const bool &flush)
{
    if (!m_board) {
        return false;
    }
    const ZepBoard::Module module = m_board->module();
    if (module != ZepBoard::ZEP2 && module != ZepBoard::TBX) {
        return flush || sendCommand(AtCmdHandler::TX, {data}, shortTimeout);
    }
    if (flush) {
        return flushTxFifo(data, options);
    }

    const TxManager::Profile profile = m_tx->selectedProfile();
    const int attribute = options.optionAck ? attributeAck : options.optionMail ? attributeMail : 0;
    QStringList message{data};
    if (attribute != 0 && profile != TxManager::PREPASS) {
        message << "0x"_L1 + QString::number(attribute);
    }
    // A reset of the device may stand where the answer to ATXRP should, or behind it: then nothing may go out any more,
    // for nobody would await it.
    const auto isWantedStill = [this] {
        deliverHeldLines();
        return m_tx->sequenceRunning();
    };
    if (profile == TxManager::PREPASS_ON_MODULE) {
        const int repetition = options.optionImportant ? moduleRepetitionImportant : moduleRepetition;
        return sendCommand(AtCmdHandler::ATXRP, {QString::number(repetition), QString::number(moduleRepetitionPeriod)},
                           shortTimeout) &&
               isWantedStill() && sendCommand(AtCmdHandler::TXDATA, message, shortTimeout);
    }
    // The application repeats by itself: the device's own repetition is turned off.
    return sendCommand(AtCmdHandler::ATXRP, {u"0"_s}, shortTimeout) && isWantedStill() &&
           sendCommand(AtCmdHandler::TX, message, longTimeout);
}

bool ZepManager::flushTxFifo(const QString &data, const Payload::Options &options)
{
    ZEPGUI_ASSERT(data.isEmpty(), "No valid function call (flush action requested but a message was passed)",
                  "src/ZepManager");
    const TxManager::Profile profile = m_tx->selectedProfile();
    const bool hasQueue =
        profile == TxManager::PREPASS_ON_MODULE || (profile == TxManager::PERIODIC && options.optionAck);
    if (!hasQueue || m_serialPort->isLineLost()) {
        return true;
    }
    m_logger->log(Logger::APP, u"Flushing Tx FIFO..."_s);
    const bool flushed = sendCommand(AtCmdHandler::TXFIFO, {QString()}, longTimeout);
    m_tx->settleAck();
    return flushed;
}

void ZepManager::processTxResponse()
{
    const AtCmdHandler &line = *m_atCmdHandler;
    if (line.cmdId() == AtCmdHandler::TX) {
        if (line.paramDouble(1) == 0) { // of any sign and length: only 0 is success
            m_tx->onTxDone(line.param(0));
        } else {
            m_logger->log(Logger::APP, "A Tx error occured ("_L1 + line.param(1) + u')');
            m_tx->onTxFailed();
        }
    } else if (line.cmdId() == AtCmdHandler::TXFIFO) {
        if (line.param(0) == "end"_L1) {
            m_logger->log(Logger::APP, u"Tx FIFO content description (respective order):"_s);
            m_logger->log(Logger::APP, u"transmitted (0 or 1), data (hexadecimal), attribute bitmap"_s);
        }
    } else {
        m_logger->log(Logger::APP, u"---- Tx configuration ----"_s);
        m_logger->log(Logger::APP, "Redundancy: "_L1 + line.param(1) + " - Period: "_L1 +
                                       QString::number(line.paramUInt(2) / 1000) + u's');
    }
}

void ZepManager::processDeviceAssertion()
{
    // The codec holds the last line only, and stopping a sequence can bring the next one.
    const QString text = m_atCmdHandler->param(0);
    qCCritical(lcEvents).noquote() << "ZEP ASSERT!" << text;
    m_logger->log(Logger::APP, "ZEP ASSERT! "_L1 + text);
    m_logger->log(Logger::APP, u"A reset was triggered on device, stopping sequence and restoring UTC time..."_s);
    m_tx->stop();
    m_tx->setCustomUtcTime(Clock::current()->utcNow().toString(Qt::ISODate));
    m_tx->settleAck();
}
