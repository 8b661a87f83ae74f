// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import "." as T

/// Reads parameters from the device; rests while a sequence runs.
T.ToolButton {
    enabled: g_enableInput // qmllint disable unqualified
    icon.source: "qrc:/images/refresh.svg"
    mRippleHalf: true
    mToolTip: qsTr("Get parameter(s) from module")
}
