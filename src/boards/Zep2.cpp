// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Zep2.h"

#include "ResponseGrammar.h"

using namespace Qt::StringLiterals;

Zep2::Zep2(QObject *parent, quint32 baudRate) : ZepBoard(parent)
{
    m_portSettings.baudRate = static_cast<qint32>(baudRate);
    m_regexMap = {
        // command             data
        {AtCmdHandler::OK, AT_RE_CMD_OK},
        {AtCmdHandler::ERROR, AT_RE_CMD_ERROR},
        {AtCmdHandler::ID, AT_RE_CMD_ID},
        {AtCmdHandler::ADDR, AT_RE_CMD_ADDR},
        {AtCmdHandler::FW, AT_RE_CMD_FW},
        {AtCmdHandler::TX, AT_RE_CMD_TX},
        {AtCmdHandler::PREPASS_EN, AT_RE_CMD_PREPASS_EN},
        {AtCmdHandler::PREPASS_CFG, AT_RE_CMD_PREPASS_CFG},
        {AtCmdHandler::POS, AT_RE_CMD_POS},
        {AtCmdHandler::AOP, AT_RE_CMD_AOP},
        {AtCmdHandler::SAT, AT_RE_CMD_SAT},
        {AtCmdHandler::UDATE, AT_RE_CMD_UDATE},
        {AtCmdHandler::NEXTPASS, AT_RE_CMD_NEXTPASS},
        {AtCmdHandler::TXFIFO, AT_RE_CMD_TXFIFO},
        {AtCmdHandler::ATXRP, AT_RE_CMD_ATXRP},
        {AtCmdHandler::RX, "^(?<RX>"_L1 + AT_RE_HEX_DIGIT + "+)$"_L1},
        {AtCmdHandler::BC, "^(?<BC>"_L1 + AT_RE_HEX_DIGIT + "+)$"_L1},
        {AtCmdHandler::ASSERT, AT_RE_CMD_ASSERT},
        {AtCmdHandler::RCONF, AT_RE_CMD_RCONF},
    };
}
