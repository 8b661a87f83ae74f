// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.Material
import "../types" as T

/// A modal dialog no wider than its window, and inside it wherever its parent stands. The title may come from outside
/// the program, so it is never taken for rich text. Its Ok button has the focus, or else its Cancel or Close button.
Dialog {
    id: root

    margins: padding
    modal: true
    width: Overlay.overlay ? Math.min(implicitWidth, Overlay.overlay.width - 2 * padding) : implicitWidth

    header: Label {
        bottomPadding: 0
        font.bold: true
        font.pixelSize: 16
        padding: 24
        text: root.title
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }

    onAboutToShow: (standardButton(Dialog.Ok) ?? standardButton(Dialog.Cancel) ?? standardButton(Dialog.Close))?.forceActiveFocus(Qt.PopupFocusReason)

    T.FlatBackground {
        mBackground: root.background
    }
}
