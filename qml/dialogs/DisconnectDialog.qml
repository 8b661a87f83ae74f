// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import Style
import com.sarvane.qml

/// Asks before a session ends. Ok leaves the dialog open with a spinner, because a transmission under way is waited
/// for; the end of the session closes it.
ModalDialog {
    id: root

    function hideSpinner(): void {
        spinner.visible = false;
    }

    // The bar is lower than the dialog, which the margin keeps inside the window.
    margins: 0
    title: qsTr("Disconnect %1?").arg(ZepManager.board?.name ?? "")
    width: 300
    x: parent.width - width
    y: (parent.height - height) / 2

    onAboutToShow: buttonBox.standardButton(Dialog.Ok).forceActiveFocus(Qt.PopupFocusReason)

    // Not the dialog's own button box, which would close the dialog on Ok.
    footer: Item {
        implicitHeight: buttonBox.implicitHeight

        DialogButtonBox {
            id: buttonBox

            anchors.fill: parent
            enabled: !spinner.visible
            standardButtons: Dialog.Ok | Dialog.Cancel

            onAccepted: {
                spinner.visible = true;
                ZepManager.disconnect();
            }
            onRejected: root.close()
        }
    }

    BusyIndicator {
        id: spinner

        Accessible.name: qsTr("Disconnecting")
        Material.accent: Style.color.sarvanePink
        anchors.right: parent.right
        anchors.rightMargin: root.padding
        height: 34
        padding: 0
        parent: root.header
        visible: false
        width: 34
        y: root.padding - 8
    }
}
