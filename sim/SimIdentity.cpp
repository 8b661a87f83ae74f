// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SimIdentity.h"

#include <QRandomGenerator>

namespace {

QString digits(QRandomGenerator &random, int count, int base)
{
    QString text;
    for (int i = 0; i < count; ++i) {
        text += QString::number(random.bounded(base), base);
    }
    return text;
}

QStringList bytes(QRandomGenerator &random, int count)
{
    QStringList list;
    for (int i = 0; i < count; ++i) {
        list += digits(random, 2, 16).toUpper();
    }
    return list;
}

} // namespace

SimIdentity::SimIdentity(quint32 seed)
{
    QRandomGenerator random(seed);
    id = digits(random, 8, 16);
    address = digits(random, 7, 16);
    serialNumber = QStringLiteral("ZEP") + digits(random, 11, 10);
    loraDeviceEui = bytes(random, 8);
    loraAppEui = bytes(random, 8);
    loraAppKey = bytes(random, 16);
}

std::vector<Command> SimIdentity::commands(const QString &firmware) const
{
    const Boards all = Board::Zep1 | Board::Zep2 | Board::Tbx | Board::Ranger;
    const auto readOnly = [](const char *name, Boards boards, const QString &text) {
        const QString word = QLatin1String(name);
        return Command{word, boards, 0, 0, {}, [word, text] { return Answer::value(word, text); }, {}};
    };
    Command firmwareCommand = readOnly("FW", all, QString());
    firmwareCommand.query = [&firmware] { return Answer::value(QStringLiteral("FW"), firmware); };
    return {
        firmwareCommand,
        readOnly("ID", all, id),
        readOnly("ADDR", Board::Zep2 | Board::Tbx, address),
        readOnly("SN", Board::Zep1, serialNumber),
        readOnly("LORA_DEUI", Board::Ranger, loraDeviceEui.join(u',')),
    };
}

QString factoryFirmware(Board board)
{
    switch (board) {
    case Board::Zep1:
        return QStringLiteral("3.2.1");
    case Board::Zep2:
        return QStringLiteral("2.1.0");
    case Board::Tbx:
        return QStringLiteral("1.0.4");
    case Board::Ranger:
        return QStringLiteral("1,SW1.5.2");
    }
    return {};
}
