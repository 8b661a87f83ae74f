// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.Material
import "../types" as T

/// A modal dialog as wide as the longest line of its title or its content, no wider than its window, and inside it
/// wherever its parent is. The title may come from outside the program, so it is never taken for rich text. Its Ok
/// button has the focus, or else its Cancel or Close button.
Dialog {
    id: root

    implicitWidth: Math.max(unwrappedTitle.implicitWidth, contentWidth + leftPadding + rightPadding, implicitFooterWidth)
    margins: padding
    modal: true
    width: Overlay.overlay ? Math.min(implicitWidth, Overlay.overlay.width - 2 * padding) : implicitWidth

    header: Label {
        id: titleLabel

        bottomPadding: 0
        font.bold: true
        font.pixelSize: 16
        padding: 24
        text: root.title
        textFormat: Text.PlainText
        wrapMode: Text.Wrap

        // A label that wraps gives the width of all its lines in a row as its implicit width.
        Label {
            id: unwrappedTitle

            font: titleLabel.font
            padding: titleLabel.padding
            text: titleLabel.text
            textFormat: Text.PlainText
            visible: false
        }
    }

    onAboutToShow: (standardButton(Dialog.Ok) ?? standardButton(Dialog.Cancel) ?? standardButton(Dialog.Close))?.forceActiveFocus(Qt.PopupFocusReason)

    T.FlatBackground {
        mBackground: root.background
    }
}
