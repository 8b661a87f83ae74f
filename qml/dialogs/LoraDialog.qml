// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts

/// Tells what the tab of the LoRa settings is for.
Dialog {
    // Whoever opens it by hovering closes it by leaving.
    closePolicy: Popup.NoAutoClose

    background: Rectangle {
        border.color: Material.foreground
        color: Material.background
    }

    ColumnLayout {
        spacing: 12

        Label {
            text: qsTr("Switch between LoRa and Sarvane satellite connectivity")
        }

        RowLayout {
            spacing: 12

            Image {
                Layout.preferredWidth: 36
                fillMode: Image.PreserveAspectFit
                source: "qrc:/images/orange_logo.svg"
                sourceSize.width: 36
            }

            Label {
                text: qsTr("LoRa® powered by Orange Live Objects")
            }
        }
    }
}
