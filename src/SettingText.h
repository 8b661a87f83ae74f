// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QVariant>

/// The text of an entry of a settings file, as the user wrote it: a comma makes a list of a text without quotes, and
/// here it becomes one text again. Blanks around the comma are lost.
[[nodiscard]] QString settingText(const QVariant &value);
