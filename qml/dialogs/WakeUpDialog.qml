// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick.Controls

/// Asks for the wake-up button of a sleeping device while a request waits for it.
ModalDialog {
    anchors.centerIn: Overlay.overlay
    closePolicy: Popup.NoAutoClose
    standardButtons: Dialog.Cancel
    title: qsTr("Please press wake up button")
}
