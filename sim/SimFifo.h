// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

#include <deque>
#include <optional>

/// The queue of messages that wait for a pass. It holds eight; one that has been sent stays listed until it is
/// flushed or gives way to a new one.
class SimFifo
{
public:
    struct Message
    {
        QString data; ///< hexadecimal
        uint attribute = 0;
        bool transmitted = false;
        bool isPlanned = false; ///< for the pass that is running
    };

    static constexpr size_t capacity = 8;

    /// False if eight messages wait already.
    [[nodiscard]] bool add(const Message &message);
    void clear() { m_messages.clear(); }
    /// Plans all that waits for a pass that begins, or nothing.
    void plan(bool isPlanned);
    /// The oldest message that waits.
    [[nodiscard]] std::optional<Message> next() const;
    void markNextTransmitted();
    /// One text for each message, oldest first: transmitted flag, data, attribute bitmap.
    [[nodiscard]] QStringList listing() const;

private:
    std::deque<Message> m_messages;
};
