// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.Material
import QtQuick.Layouts
import Shortcuts

/// Lists the keys for what is done often.
ModalDialog {
    anchors.centerIn: Overlay.overlay
    standardButtons: Dialog.Close
    title: qsTr("Keyboard shortcuts")

    GridLayout {
        columnSpacing: 30
        columns: 2
        flow: GridLayout.TopToBottom
        rows: Shortcuts.all.length

        Repeater {
            model: Shortcuts.all

            Label {
                required property var modelData

                font.bold: true
                text: modelData.key
                textFormat: Text.PlainText
            }
        }

        Repeater {
            model: Shortcuts.all

            Label {
                required property var modelData

                text: modelData.what
                textFormat: Text.PlainText
            }
        }
    }
}
