// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../delegates"
import "../types" as T

/// The satellites of the bulletins, a tile for each.
GridLayout {
    id: root

    readonly property int elementWidth: 125

    columnSpacing: 10
    columns: Math.max(1, Math.floor(width * 0.9 / elementWidth))
    rowSpacing: 10

    RowLayout {
        Layout.bottomMargin: 5
        Layout.columnSpan: root.columns

        Label {
            font.pointSize: 10
            text: tiles.count === 0 ? qsTr("No satellite info available") : qsTr("<b>Last update:</b> ") + ZepManager.tx.prepassProfile.satelliteAopModel.creationDate
            textFormat: Text.StyledText
        }

        T.DownloadButton {}
    }

    Repeater {
        id: tiles

        model: ZepManager.tx.prepassProfile.satelliteAopModel

        SatelliteTile {
            contentWidth: root.elementWidth
            mToolTipWidth: root.width * 0.75
        }
    }
}
