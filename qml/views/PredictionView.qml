// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../types" as T

/// The next pass that the module computed, and what it computes it from.
ColumnLayout {
    id: root

    /// A message of the page shows, which the tooltip of the download would cover.
    property bool mMessageShown: false

    T.PassTable {
        Layout.fillWidth: true
        Layout.minimumHeight: 65
        mModel: ZepManager.tx.prepassProfile.nextPassModel
    }

    ScrollView {
        Layout.fillHeight: true
        Layout.fillWidth: true

        RowLayout {
            spacing: 15

            PositionInputs {
                id: positionInputs

                Layout.alignment: Qt.AlignTop
                mMessageShown: root.mMessageShown
            }

            ToolSeparator {
                Layout.preferredHeight: Math.max(positionInputs.implicitHeight, predictionInputs.implicitHeight)
                Layout.topMargin: 8
            }

            PredictionInputs {
                id: predictionInputs

                Layout.alignment: Qt.AlignTop
                Layout.rightMargin: 15
            }
        }
    }
}
