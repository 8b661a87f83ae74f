// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick.Controls.Material
import Style

/// A pink indicator as small as the text beside it; it turns while it is seen.
BusyIndicator {
    Material.accent: Style.color.sarvanePink
    implicitHeight: 20
    implicitWidth: 20
    padding: 0
    running: visible
}
