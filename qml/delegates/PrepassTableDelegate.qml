// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import Style
import com.sarvane.qml

/// One satellite pass as a row of a table, or the heading above the rows, whose texts then stand in for those of a
/// pass.
ItemDelegate {
    id: root

    required property string duration
    required property int index
    required property bool isActive
    // A text from every model; were it a number, zero would mean that nobody knows it.
    required property var middleElevation
    required property string satelliteName
    required property string startUTC

    property bool isHeader: false

    // Not told again when a download changes the answer.
    property string mDownlink: isHeader ? qsTr("DNLK") : ZepManager.tx.prepassProfile.satelliteAopModel.getDownlinkCapability(satelliteName)
    readonly property bool mIsNext: !isHeader && !isActive && index === mTx.nextPassIdx
    // Untyped, for the tools know no type of its counters.
    readonly property var mTx: ZepManager.tx

    Accessible.name: satelliteName + ", " + startUTC
    checkable: true
    verticalPadding: 0
    width: parent?.width ?? 0

    background: Rectangle {
        color: root.isHeader ? "transparent" : root.isActive ? Style.color.sarvaneYellow : root.mIsNext ? Style.color.sarvanePink : root.checked ? Style.color.transparentPink : "transparent"

        // Still, where a ripple would grow: the software renderer paints that one outside of the list.
        Rectangle {
            anchors.fill: parent
            color: root.Material.rippleColor
            visible: root.enabled && (root.activeFocus || root.hovered)
        }
    }
    contentItem: RowLayout {
        Cell {
            mLeast: "Names-10"
            mShare: 0.1
            text: root.satelliteName
        }

        Cell {
            mLeast: "DNLK"
            mShare: 0.1
            text: root.mDownlink
        }

        Cell {
            mLeast: "Elevation"
            mShare: 0.2
            text: root.middleElevation === 0 ? qsTr("NA") : root.middleElevation
        }

        Cell {
            horizontalAlignment: Text.AlignRight
            mLeast: "Mon Jan 01, 00:00:00"
            mShare: 0.4
            text: root.startUTC === "" ? qsTr("NA") : root.startUTC
        }

        Cell {
            horizontalAlignment: Text.AlignRight
            mLeast: "00:00:00"
            mShare: 0.2
            text: root.duration
        }
    }

    FontLoader {
        id: monospace

        source: Style.font.robotoMono
    }

    FontMetrics {
        id: metrics

        font.family: monospace.name
        font.pointSize: 10
    }

    Connections {
        function onAopDataDownloadFinished(error: string) {
            if (error === "") {
                root.mDownlink = ZepManager.tx.prepassProfile.satelliteAopModel.getDownlinkCapability(root.satelliteName);
            }
        }

        enabled: !root.isHeader
        target: ZepManager.tx.prepassProfile
    }

    component Cell: Label {
        // The usual text, for which there is room before the shares count.
        required property string mLeast
        required property real mShare

        Layout.fillWidth: true
        Layout.minimumWidth: metrics.advanceWidth(mLeast)
        Layout.preferredWidth: root.availableWidth * mShare
        color: root.isHeader ? restColor : root.isActive ? Style.color.sarvaneDark : root.mIsNext ? Style.color.sarvaneLight : restColor
        elide: Text.ElideRight
        font.bold: root.isHeader
        font.family: monospace.name
        font.pointSize: 10
        textFormat: Text.PlainText

        readonly property color restColor: root.enabled ? Material.foreground : Material.hintTextColor
    }
}
