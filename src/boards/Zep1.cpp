// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Zep1.h"

#include "ResponseGrammar.h"

using namespace Qt::StringLiterals;

Zep1::Zep1(QObject *parent, quint32 baudRate) : ZepBoard(parent)
{
    m_portSettings.baudRate = static_cast<qint32>(baudRate);
    m_regexMap = {
        // command             data
        {AtCmdHandler::OK, AT_RE_CMD_OK},
        {AtCmdHandler::ERROR, AT_RE_CMD_ERROR},
        {AtCmdHandler::ID, AT_RE_CMD_ID},
        {AtCmdHandler::FW, AT_RE_CMD_FW},
        {AtCmdHandler::TX, u"^((0),(?<TX>.+)?)$"_s}, // only success is understood
        {AtCmdHandler::SN, u"^(?<SN>ZEP[0-9]{11})$"_s},
        {AtCmdHandler::ATXFRQ, u"^(?<ATXFRQ>[0-9]{1,9}(,1)?)$"_s},
        {AtCmdHandler::PWR, u"^(?<PWR>[0-9]{3,4})$"_s},
        {AtCmdHandler::AFMT, u"^(?<AFMT>(0|1){1},(0|16){1},(0|32){1})$"_s},
    };
}
