// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Payload.h"

Payload::Payload(const QString &givenMessage, uchar givenRedundancy, QObject *parent)
    : QObject(parent), message(givenMessage), redundancy(givenRedundancy)
{
}
