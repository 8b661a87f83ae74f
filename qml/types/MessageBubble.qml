// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material

/// A short coloured message above its parent; show(text, milliseconds) makes it appear.
ToolTip {
    id: root

    property color bgColor

    background: Pane {
        Material.background: root.bgColor
    }
    contentItem: Label {
        color: "white"
        text: root.text
        textFormat: Text.PlainText
    }
}
