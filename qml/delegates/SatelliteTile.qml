// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import Style
import "../types" as T

/// A satellite with the state of its two links, and its bulletin for the mouse and for the Tab key.
Pane {
    id: root

    required property string aopData
    required property string downlinkStatus
    required property int index
    required property string satelliteName
    required property string uplinkStatus

    property real mToolTipWidth

    // The tiles run through the palette, and through it again.
    readonly property int mPaletteEntry: (Material.Shade50 + index) % (Material.BlueGrey + 1)

    Accessible.name: satelliteName
    Accessible.role: Accessible.Grouping
    Material.background: mPaletteEntry
    Material.theme: Material.Dark
    focusPolicy: Qt.TabFocus
    // As many tiles as the view counts have to fit beside each other.
    horizontalPadding: 2

    ColumnLayout {
        anchors.fill: parent

        T.ToolButton {
            Accessible.ignored: true
            Layout.alignment: Qt.AlignHCenter
            focusPolicy: Qt.NoFocus
            icon.color: Style.color.sarvaneDark
            icon.height: 18
            icon.source: "qrc:/images/satellite.svg"
            icon.width: 18
        }

        T.Label {
            Layout.alignment: Qt.AlignHCenter
            Layout.maximumWidth: root.availableWidth
            color: Style.color.sarvaneDark
            elide: Text.ElideRight
            text: root.satelliteName
            textFormat: Text.PlainText
        }

        StatusLabel {
            text: qsTr("DNLK: ") + root.downlinkStatus
        }

        StatusLabel {
            text: qsTr("UPLK: ") + root.uplinkStatus
        }
    }

    HoverHandler {
        id: hover
    }

    ToolTip {
        id: bulletin

        delay: 175
        visible: hover.hovered || root.visualFocus
        width: root.mToolTipWidth

        background: Rectangle {
            color: root.Material.backgroundColor
        }
        contentItem: Label {
            color: Style.color.sarvaneDark
            text: root.aopData
            textFormat: Text.RichText
            wrapMode: Text.Wrap
        }
    }

    component StatusLabel: Label {
        Layout.alignment: Qt.AlignHCenter
        color: Style.color.sarvaneDark
        font.pointSize: 10
        textFormat: Text.PlainText
    }
}
