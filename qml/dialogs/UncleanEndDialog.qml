// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls
import com.sarvane.qml
import "../types" as T

/// Reports at the start which sessions had no regular end, and offers the folder of their logs.
ModalDialog {
    id: root

    anchors.centerIn: Overlay.overlay
    contentWidth: label.width
    standardButtons: Dialog.Open | Dialog.Close
    title: qsTr("The last session did not end regularly")

    Component.onCompleted: {
        standardButton(Dialog.Open).text = qsTr("Open folder");
        open();
    }
    onAccepted: Qt.openUrlExternally(ZepManager.journal.folder)

    T.Label {
        id: label

        text: qsTr("Its log is kept in:\n%1").arg(ZepManager.journal.uncleanFiles)
        textFormat: Text.PlainText
        width: Overlay.overlay ? Math.min(550, Overlay.overlay.width - 4 * root.padding) : 550
        wrapMode: Text.Wrap
    }
}
