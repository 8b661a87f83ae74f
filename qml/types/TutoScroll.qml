// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import Style

/// A long rich text of the program's own in a scrolled pane that fills its parent; the arrow keys scroll it.
ScrollView {
    id: root

    property string tutoText

    ScrollBar.horizontal.policy: ScrollBar.AlwaysOff
    anchors.fill: parent
    contentWidth: availableWidth
    focus: true
    padding: Style.size.panelPadding

    Keys.onDownPressed: ScrollBar.vertical.increase()
    Keys.onUpPressed: ScrollBar.vertical.decrease()

    Label {
        text: root.tutoText
        textFormat: Text.RichText
        width: root.availableWidth
        wrapMode: Text.WordWrap

        onLinkActivated: link => Qt.openUrlExternally(link)

        HoverHandler {
            cursorShape: parent.hoveredLink !== "" ? Qt.PointingHandCursor : Qt.ArrowCursor
        }
    }
}
