// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "WireNumber.h"

#include <QMap>
#include <QObject>
#include <QRegularExpression>
#include <QStringList>
#include <QtQmlIntegration>

/// The codec of the text protocol spoken with the device: forms the bytes of a request, and cuts one received line
/// into a command, its parameters and, for an error report, the device's error code. It holds the content of the
/// last line that it parsed, so a result has to be read before the next line is parsed. Sends and receives nothing.
class AtCmdHandler : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    /// The commands of all boards. The key of a value is its word on the wire, in both directions.
    enum CmdId : int {
        OK,
        ERROR,
        PING,
        ID,
        ADDR,
        FW,
        TX,
        SN,
        ATXFRQ,
        PWR,
        AFMT,
        SAVE_CFG,
        CW,
        PREPASS_EN,
        PREPASS_CFG,
        POS,
        AOP,
        SAT,
        UDATE,
        NEXTPASS,
        TXDATA,
        TXFIFO,
        ATXRP,
        ATXSTART,
        RX,
        BC,
        ASSERT,
        SATDET,
        RCONF,
        PACQ,
        PACQ_SENS,
        ALRT_SENS,
        ALRT_LIGHT,
        ALRT_ACC,
        ALRT_DRYC,
        ALRT_PB,
        RST,
        ZEP_TX,
        ZEP_REDUN,
        LORA_EN,
        LORA_REDUN,
        LORA_ACK,
        LORA_DEUI,
        LORA_AEUI,
        LORA_AKEY,
    };
    Q_ENUM(CmdId)

    /// \a regexMap holds the board's patterns for the data of a line, by command (see ResponseGrammar.h). A command
    /// without a pattern takes any data and reads none of it.
    AtCmdHandler(QObject *parent, const QMap<CmdId, QString> &regexMap);

    /// The whole request, line end included: "AT+ID=?" without \a params, "AT+RST=" with one empty parameter.
    /// Characters outside Latin-1 do not survive.
    [[nodiscard]] QByteArray buildRequest(CmdId id, const QStringList &params) const;

    /// Parses one trimmed line: of the device, or of a configuration file if \a isRequest. On true the accessors
    /// tell its content. On false they tell how far it got: a line whose data does not fit its pattern leaves "NA"
    /// as the one parameter. The reason goes to the process log.
    bool parseMessage(const QString &line, bool isRequest);

    /// The command of the last line, -1 if its word is none.
    [[nodiscard]] CmdId cmdId() const { return m_cmdId; }
    [[nodiscard]] QString cmdName() const;

    /// Parameter 0 is the whole data, 1 and up are its fields. Read only what the command's pattern guarantees: an
    /// index beyond that is not checked, and reads as an empty text.
    [[nodiscard]] QString param(uchar index) const { return m_params.value(index); }
    [[nodiscard]] QChar paramChar(uchar index) const;
    /// 0 if the text is no decimal number, or does not fit 32 bits.
    [[nodiscard]] quint32 paramUInt(uchar index) const { return param(index).toUInt(); }
    /// 0 if the text is no number; the largest of its sign if it is too large.
    [[nodiscard]] double paramDouble(uchar index) const { return finiteNumber(param(index).toDouble()); }
    [[nodiscard]] uchar paramCount() const { return static_cast<uchar>(m_params.size()); }

    /// The device's code of the last line if that was an ERROR line, else 0.
    [[nodiscard]] quint32 errorCode() const { return m_errorCode; }
    /// What errorCode() means, for the user.
    [[nodiscard]] QString errorString() const;

private:
    QMap<CmdId, QString> m_regexMap;
    CmdId m_cmdId = OK;
    QStringList m_params{QString()};
    quint32 m_errorCode = 0;
    QRegularExpression m_responseRegex;
    QRegularExpression m_requestRegex;
};
