// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// One operation per identity field and plain parameter, one command each. Answers land in the models by way of
// ZepManagerDispatch.cpp; what is written here is the fallback of a request that failed.

#include "ZepManager.h"

using namespace Qt::StringLiterals;

namespace {
const QString notAvailable = u"NA"_s;
}

// Each fallback looks at the board again: a session can end while its request waits.

void ZepManager::getTxFrequency()
{
    if (!sendCommand(AtCmdHandler::ATXFRQ, {}, shortTimeout) && m_board) {
        m_board->setTxFrequency(0);
    }
}

void ZepManager::getTxPower()
{
    if (!sendCommand(AtCmdHandler::PWR, {}, shortTimeout) && m_board) {
        m_board->setTxPower(0);
    }
}

bool ZepManager::setTxPower(ushort power)
{
    if (sendCommand(AtCmdHandler::PWR, {QString::number(power)}, shortTimeout)) {
        return true;
    }
    if (m_board) {
        m_board->setTxPower(m_board->txPower()); // the notification brings the input back to the true value
    }
    return false;
}

void ZepManager::getRadioConfig()
{
    if (!sendCommand(AtCmdHandler::RCONF, {}, shortTimeout) && m_board) {
        m_logger->log(Logger::APP, u"Unable to get radio configuration"_s);
    }
}

void ZepManager::setRadioConf(const QByteArray &radioConf)
{
    if (!sendCommand(AtCmdHandler::RCONF, {QString::fromLatin1(radioConf).toUpper()}, shortTimeout)) {
        m_logger->log(Logger::APP, u"Cannot set radio configuration!"_s);
        return;
    }
    sendCommand(AtCmdHandler::RCONF, {}, shortTimeout);
}

void ZepManager::getId()
{
    if (!sendCommand(AtCmdHandler::ID, {}, shortTimeout) && m_board) {
        m_board->setId(notAvailable);
    }
}

void ZepManager::getAddr()
{
    if (!sendCommand(AtCmdHandler::ADDR, {}, shortTimeout) && m_board) {
        m_board->setAddr(notAvailable);
    }
}

void ZepManager::getSerialNumber()
{
    if (!sendCommand(AtCmdHandler::SN, {}, shortTimeout) && m_board) {
        m_board->setSerialNumber(notAvailable);
    }
}

void ZepManager::getFirmwareVersion()
{
    if (!sendCommand(AtCmdHandler::FW, {}, shortTimeout) && m_board) {
        m_board->setFirmwareVersion(notAvailable);
    }
}

bool ZepManager::ping()
{
    return sendCommand(AtCmdHandler::PING, {}, shortTimeout);
}

bool ZepManager::resetDevice()
{
    if (sendCommand(AtCmdHandler::RST, {QString()}, shortTimeout)) {
        return true;
    }
    if (m_board) {
        m_logger->log(Logger::APP, "Unable to reset "_L1 + m_board->name());
    }
    return false;
}
