// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Command.h"

#include <QByteArray>

/// The radio configuration and what follows from it for the length of a message.
///
/// The 16 bytes of a block mean something here alone; a real radio's block is another matter. From the first byte:
/// a mark 0xC5, the modulation 0 to 2, lowest and highest frequency in Hz with four bytes each and the high byte
/// first, the power in dBm, four bytes of nothing, and a last byte that makes the sum of all a multiple of 256.
class SimRadio
{
public:
    explicit SimRadio(Board board);

    [[nodiscard]] std::vector<Command> commands();
    /// Judges a message in hexadecimal for the present modulation; \a withAttribute adds the attribute's two bytes.
    [[nodiscard]] ErrorCode checkMessage(const QString &message, bool withAttribute) const;

    /// A valid block: frequencies in Hz, power in dBm.
    [[nodiscard]] static QByteArray makeBlock(quint8 modulation, quint32 frequencyMin, quint32 frequencyMax,
                                              quint8 power);

private:
    Answer query() const;
    Answer set(const QString &hex);

    bool m_hasModulation;
    QByteArray m_block;
};
