// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SettingText.h"

#include <QStringList>

QString settingText(const QVariant &value)
{
    const bool isList = value.typeId() == QMetaType::QStringList;
    return isList ? value.toStringList().join(QLatin1Char(',')) : value.toString();
}
