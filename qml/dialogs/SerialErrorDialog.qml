// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls
import "../types" as T

/// Tells that the link to the device failed: the title is the reason, below it is what the user can do.
ModalDialog {
    id: root

    property string mHelp

    anchors.centerIn: Overlay.overlay
    closePolicy: Popup.NoAutoClose
    contentWidth: mHelp === "" ? 0 : Math.min(longestLine.implicitWidth + 1, 480)
    standardButtons: Dialog.Ok

    // It can be selected, because it may name a command.
    T.TextEdit {
        Accessible.name: root.mHelp
        activeFocusOnPress: false
        font.bold: false
        text: root.mHelp
        textFormat: TextEdit.PlainText
        visible: root.mHelp !== ""
        width: root.contentWidth
        wrapMode: TextEdit.Wrap

        T.TextEdit {
            id: longestLine

            font.bold: false
            text: root.mHelp
            textFormat: TextEdit.PlainText
            visible: false
        }
    }
}
