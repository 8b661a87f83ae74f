// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import "." as T

/// Writes parameters to the device; rests while a sequence runs, and while they are not acceptable.
T.ToolButton {
    property bool mAcceptable: true

    enabled: g_enableInput && mAcceptable // qmllint disable unqualified
    icon.source: "qrc:/images/checkmark.svg"
    mRippleHalf: true
    mToolTip: qsTr("Set parameter(s) in module")
}
