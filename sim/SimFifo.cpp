// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SimFifo.h"

#include <algorithm>

bool SimFifo::add(const Message &message)
{
    if (m_messages.size() >= capacity) {
        const auto sent = std::find_if(m_messages.cbegin(), m_messages.cend(),
                                       [](const Message &candidate) { return candidate.transmitted; });
        if (sent == m_messages.cend()) {
            return false;
        }
        m_messages.erase(sent);
    }
    m_messages.push_back(message);
    return true;
}

void SimFifo::plan(bool isPlanned)
{
    for (Message &message : m_messages) {
        message.isPlanned = isPlanned;
    }
}

std::optional<SimFifo::Message> SimFifo::next() const
{
    const auto waiting = std::find_if(m_messages.cbegin(), m_messages.cend(),
                                      [](const Message &candidate) { return !candidate.transmitted; });
    return waiting == m_messages.cend() ? std::nullopt : std::optional<Message>(*waiting);
}

void SimFifo::markNextTransmitted()
{
    const auto waiting = std::find_if(m_messages.begin(), m_messages.end(),
                                      [](const Message &candidate) { return !candidate.transmitted; });
    if (waiting != m_messages.end()) {
        waiting->transmitted = true;
    }
}

QStringList SimFifo::listing() const
{
    QStringList lines;
    for (const Message &message : m_messages) {
        lines +=
            QStringLiteral("%1,%2,0x%3").arg(int(message.transmitted)).arg(message.data).arg(message.attribute, 0, 16);
    }
    return lines;
}
