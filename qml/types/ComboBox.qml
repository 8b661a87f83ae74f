// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import "." as T

/// A combo box whose entries are never taken for rich text, since they may come from outside the program.
ComboBox {
    id: root

    delegate: MenuItem {
        id: entry

        required property int index

        highlighted: root.highlightedIndex === index
        hoverEnabled: root.hoverEnabled
        text: root.textAt(index)
        width: ListView.view.width

        contentItem: Label {
            color: root.currentIndex === entry.index ? Material.accentColor : Material.foreground
            elide: Text.ElideMiddle
            text: entry.text
            textFormat: Text.PlainText
            verticalAlignment: Text.AlignVCenter
        }
    }

    T.FlatBackground {
        mBackground: root.background
    }

    T.FlatBackground {
        mBackground: root.popup.background
    }
}
