// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZepBoard.h"

#include <QMetaEnum>

ZepBoard::ZepBoard(QObject *parent) : QObject(parent) {}

QString ZepBoard::name() const
{
    return QString::fromLatin1(QMetaEnum::fromType<Module>().valueToKey(m_module));
}

QStringList ZepBoard::commands() const
{
    static const QList<AtCmdHandler::CmdId> reports{AtCmdHandler::OK, AtCmdHandler::ERROR, AtCmdHandler::RX,
                                                    AtCmdHandler::BC, AtCmdHandler::ASSERT};
    const auto words = QMetaEnum::fromType<AtCmdHandler::CmdId>();
    QStringList commands{QString::fromLatin1(words.valueToKey(AtCmdHandler::PING))};
    const QList<AtCmdHandler::CmdId> read = m_regexMap.keys();
    for (const AtCmdHandler::CmdId id : read) {
        if (!reports.contains(id)) {
            commands.append(QString::fromLatin1(words.valueToKey(id)));
        }
    }
    commands.sort();
    return commands;
}

void ZepBoard::setModule(ZepBoard::Module module)
{
    m_module = module;
    Q_EMIT moduleChanged();
    Q_EMIT nameChanged();
}

void ZepBoard::setPort(const QString &port)
{
    m_port = port;
    Q_EMIT portChanged();
}

void ZepBoard::setId(const QString &id)
{
    m_id = id.toUpper();
    Q_EMIT idChanged();
}

void ZepBoard::setAddr(const QString &addr)
{
    m_addr = addr.toUpper();
    Q_EMIT addrChanged();
}

void ZepBoard::setSerialNumber(const QString &serialNumber)
{
    m_serialNumber = serialNumber;
    Q_EMIT serialNumberChanged();
}

void ZepBoard::setFirmwareVersion(const QString &firmwareVersion)
{
    m_firmwareVersion = firmwareVersion;
    Q_EMIT firmwareVersionChanged();
}

void ZepBoard::setTxFrequency(uint txFrequency)
{
    m_txFrequency = txFrequency;
    Q_EMIT txFrequencyChanged();
}

void ZepBoard::setTxPower(ushort txPower)
{
    m_txPower = txPower;
    Q_EMIT txPowerChanged();
}

void ZepBoard::setIsAwake(bool isAwake)
{
    m_isAwake = isAwake;
    Q_EMIT isAwakeChanged();
}
