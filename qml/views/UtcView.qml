// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import Settings
import com.sarvane.qml

/// The clock of the interface.
RowLayout {
    spacing: 0

    Image {
        Layout.preferredHeight: 35
        Layout.preferredWidth: 22
        Layout.rightMargin: 15
        fillMode: Image.PreserveAspectFit
        source: Settings.darkTheme ? "qrc:/images/sarvane_logo_dark_small.svg" : "qrc:/images/sarvane_logo_light_small.svg"
        sourceSize.width: 22
    }

    Label {
        font.bold: true
        font.pointSize: 18
        text: qsTr("UTC time: ")
    }

    Label {
        font.pointSize: 20
        text: ZepManager.tx.utcTime
        textFormat: Text.PlainText
    }
}
