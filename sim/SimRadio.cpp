// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SimRadio.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <numeric>

namespace {

constexpr qsizetype blockSize = 16;
constexpr char blockMark = char(0xC5);
constexpr qsizetype attributeSize = 2;
constexpr qsizetype plainMessageMax = 31; // bytes, on a board whose radio knows no modulations

struct Modulation
{
    const char *name;
    std::vector<qsizetype> messageSizes; ///< in bytes
};

const std::array<Modulation, 3> &modulations()
{
    static const std::array<Modulation, 3> table{{
        {"HRA2", {4, 8, 12, 16, 20, 24}},
        {"HRZ", {19}},
        {"SHRA4", {3}},
    }};
    return table;
}

char closingByte(const QByteArray &bytes)
{
    return char(-std::accumulate(bytes.cbegin(), bytes.cend(), 0));
}

} // namespace

SimRadio::SimRadio(Board board)
    : m_hasModulation(board == Board::Zep2 || board == Board::Tbx), m_block(makeBlock(0, 401600000, 401700000, 27))
{
}

std::vector<Command> SimRadio::commands()
{
    Command command{QStringLiteral("RCONF"), Board::Zep2 | Board::Tbx, 1, 1, {{Field::Kind::Hex}}, {}, {}};
    command.query = [this] { return query(); };
    command.set = [this](const QStringList &params) { return set(params.first()); };
    return {command};
}

ErrorCode SimRadio::checkMessage(const QString &message, bool withAttribute) const
{
    if (message.size() % 2 != 0) {
        return ErrorCode::MessageLength;
    }
    const qsizetype size = message.size() / 2 + (withAttribute ? attributeSize : 0);
    if (!m_hasModulation) {
        return size <= plainMessageMax ? ErrorCode::None : ErrorCode::MessageLength;
    }
    const auto &allowed = modulations().at(size_t(m_block.at(1))).messageSizes;
    const bool fits = std::find(allowed.cbegin(), allowed.cend(), size) != allowed.cend();
    return fits ? ErrorCode::None : ErrorCode::MessageLength;
}

QByteArray SimRadio::makeBlock(quint8 modulation, quint32 frequencyMin, quint32 frequencyMax, quint8 power)
{
    QByteArray block(blockSize - 1, '\0');
    block[0] = blockMark;
    block[1] = char(modulation);
    qToBigEndian(frequencyMin, block.data() + 2);
    qToBigEndian(frequencyMax, block.data() + 6);
    block[10] = char(power);
    return block + closingByte(block);
}

Answer SimRadio::query() const
{
    const QStringList fields{QString::number(qFromBigEndian<quint32>(m_block.constData() + 2)),
                             QString::number(qFromBigEndian<quint32>(m_block.constData() + 6)),
                             QString::number(quint8(m_block.at(10))),
                             QString::fromLatin1(modulations().at(size_t(m_block.at(1))).name)};
    return Answer::value(QStringLiteral("RCONF"), fields.join(u','));
}

Answer SimRadio::set(const QString &hex)
{
    const QByteArray block = QByteArray::fromHex(hex.toLatin1());
    if (hex.size() != 2 * blockSize) {
        return Answer::error(ErrorCode::Format);
    }
    if (block.at(0) != blockMark || quint8(block.at(1)) >= modulations().size() ||
        closingByte(block.chopped(1)) != block.back()) {
        return Answer::error(ErrorCode::Value);
    }
    m_block = block;
    return Answer::ok();
}
