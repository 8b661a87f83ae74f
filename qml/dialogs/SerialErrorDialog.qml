// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick.Controls

/// Tells that the link to the device failed; the title is the reason.
ModalDialog {
    anchors.centerIn: Overlay.overlay
    closePolicy: Popup.NoAutoClose
    standardButtons: Dialog.Ok
}
