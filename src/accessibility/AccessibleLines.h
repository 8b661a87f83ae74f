// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "AccessibleItem.h"

/// The lines of a log that show, in their order on the screen. The view makes its rows in any order and uses them
/// again.
class AccessibleLines : public AccessibleItem
{
public:
    using AccessibleItem::AccessibleItem;

protected:
    [[nodiscard]] QList<QQuickItem *> children() const override;
};
