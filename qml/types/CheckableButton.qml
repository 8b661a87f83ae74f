// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick.Controls.Material
import "." as T

/// A tool button that stays down: its ripple, and not its colour, tells that it is checked.
T.ToolButton {
    checkable: true
    icon.color: enabled ? Material.foreground : Material.hintTextColor
    mRippleActive: checked || visualFocus || hovered
}
