// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import Style

/// A short coloured message above its parent.
ToolTip {
    id: root

    property color bgColor

    /// Shows \a message for \a duration milliseconds, as an error or as good news.
    function tell(message: string, isError: bool, duration: int): void {
        bgColor = isError ? Style.color.lightRed : Style.color.lightGreen;
        timeout = -1; // one that is shown already would end when its first message does
        show(isError ? qsTr("ERROR: %1").arg(message) : message, duration);
    }

    background: Pane {
        Material.background: root.bgColor
    }
    contentItem: Label {
        color: "white"
        text: root.text
        textFormat: Text.PlainText
    }
}
