// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "AtCmdHandler.h"

#include "ProcessLog.h"

#include <QMetaEnum>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {
struct DeviceError
{
    quint32 code;
    const char *message;
};

constexpr DeviceError deviceErrors[] = {
    // code  message
    {2, "Format of parameter is incorrect"},
    {3, "Parameters are missing"},
    {4, "Too many parameters"},
    {5, "The value of the parameter is incompatible"},
    {6, "The AT command is unknown"},
    {7, "The AT command ID is invalid"},
    {8, "The AT command ID is unknown"},
    {20, "Invalid message data length"},
    {21, "The message queue is already full"},
    {22, "The message queue is empty"},
    {40, "Transceiver error (driver)"},
    {41, "Transceiver error (auto ranging)"},
    {42, "Transceiver error (PLL)"},
    {43, "Transceiver error (crystal timeout)"},
    {44, "Transceiver error (reset)"},
};

QMetaEnum commandEnum()
{
    return QMetaEnum::fromType<AtCmdHandler::CmdId>();
}
} // namespace

AtCmdHandler::AtCmdHandler(QObject *parent, const QMap<CmdId, QString> &regexMap)
    : QObject(parent)
    , m_regexMap(regexMap)
    , m_responseRegex(uR"(^\+(?<CMD>[A-Z_]+)(=|:)?(?<DATA>.+)?$)"_s)
    , m_requestRegex(uR"(^AT\+(?<CMD>[A-Z_]+)=(?<DATA>.+)?$)"_s)
{
}

QByteArray AtCmdHandler::buildRequest(CmdId id, const QStringList &params) const
{
    const QString request =
        "AT+"_L1 + QLatin1String(commandEnum().valueToKey(id)) + u'=' + (params.isEmpty() ? u"?"_s : params.join(u','));
    return request.toLatin1() + "\r\n";
}

bool AtCmdHandler::parseMessage(const QString &line, bool isRequest)
{
    m_params.clear();
    const QRegularExpressionMatch lineMatch = (isRequest ? m_requestRegex : m_responseRegex).match(line);
    if (!lineMatch.hasMatch()) {
        qCCritical(lcWire, "Unable to extract command response id");
        return false;
    }

    const QString word = lineMatch.captured(u"CMD");
    bool known = false;
    m_cmdId = static_cast<CmdId>(commandEnum().keyToValue(word.toLatin1().constData(), &known));
    if (!known) {
        qCCritical(lcWire).noquote().nospace() << "Invalid AT command id: " << word;
        return false;
    }

    const QString data = lineMatch.captured(u"DATA");
    QRegularExpression regex;
    regex.setPattern(m_regexMap.value(m_cmdId));
    const QRegularExpressionMatch match = regex.match(data);
    if (!match.hasMatch()) {
        m_params.append(u"NA"_s);
        qCCritical(lcWire).noquote() << "Unable to extract" << word << "data";
        return false;
    }

    // Capture 1 is the whole data: read by the command's name, since two patterns give it another place or name.
    m_params.append(match.captured(word));
    for (int index = 2; index <= match.lastCapturedIndex(); ++index) {
        m_params.append(match.captured(index));
    }
    m_errorCode = m_cmdId == ERROR ? paramUInt(0) : 0;
    return true;
}

QString AtCmdHandler::cmdName() const
{
    return QString::fromLatin1(commandEnum().valueToKey(m_cmdId));
}

QChar AtCmdHandler::paramChar(uchar index) const
{
    const QString text = param(index);
    return text.isEmpty() ? QChar() : text.front();
}

QString AtCmdHandler::errorString() const
{
    const auto *const error = std::find_if(std::begin(deviceErrors), std::end(deviceErrors),
                                           [this](const DeviceError &row) { return row.code == m_errorCode; });
    return error == std::end(deviceErrors) ? u"Unknown error"_s : QString::fromLatin1(error->message);
}
