// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import Style
import "." as T

/// A small button over the lower edge of a log that does not follow its newest line.
T.ToolButton {
    id: root

    focusPolicy: Qt.NoFocus // the log has the End key for it
    implicitHeight: 28
    implicitWidth: 36
    mToolTip: qsTr("Jump to latest")
    text: "▼"

    Accessible.name: mToolTip

    background: Rectangle {
        color: root.hovered ? Style.color.sarvanePink : Style.color.lightBlue
        opacity: 0.85
        radius: 4
    }
    contentItem: Label {
        color: "white"
        font: root.font
        horizontalAlignment: Text.AlignHCenter
        text: root.text
        verticalAlignment: Text.AlignVCenter
    }
}
