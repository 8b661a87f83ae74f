// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import Style
import "../delegates"

/// A table of satellite passes under its heading; what is declared in it stands above the rows.
Frame {
    id: root

    readonly property alias mCount: list.count
    property alias mModel: list.model

    // What a usual row needs.
    implicitWidth: metrics.advanceWidth("Names-10 DNLK Elevation Mon Jan 01, 00:00:00 00:00:00") + 2 * 16 + leftPadding + rightPadding

    FontMetrics {
        id: metrics

        font.family: monospace.name
        font.pointSize: 10
    }

    FontLoader {
        id: monospace

        source: Style.font.robotoMono
    }

    ListView {
        id: list

        Accessible.name: qsTr("Satellite passes")
        Accessible.role: Accessible.List
        // The arrow keys lead through the rows.
        activeFocusOnTab: count > 0
        anchors.fill: parent
        clip: true

        ScrollBar.vertical: ScrollBar {
            active: false
        }
        delegate: PrepassTableDelegate {}
        displaced: Transition {
            NumberAnimation {
                duration: 200
                properties: "x,y"
            }
        }
        header: PrepassTableDelegate {
            duration: qsTr("Duration")
            index: -1
            isActive: false
            isHeader: true
            middleElevation: qsTr("Elevation")
            satelliteName: qsTr("Name")
            startUTC: qsTr("Start UTC time")
        }
    }
}
