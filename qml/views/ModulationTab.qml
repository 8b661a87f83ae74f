// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.Material
import QtQuick.Dialogs
import QtQuick.Layouts
import Strings
import com.sarvane.qml
import "../dialogs"
import "../types" as T

// The choice of the radio's modulation, and what the device reports of it.
ColumnLayout {
    id: root

    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected // qmllint disable unqualified

    // Untyped, for the small numbers that the tools know no type of.
    readonly property var modulation: ZepManager.tx.modulationModel

    RowLayout {
        Layout.alignment: Qt.AlignTop
        spacing: 0

        T.Label {
            text: qsTr("Choose your modulation")
        }

        T.HelpButton {
            mToolTip: qsTr("Need some help about modulation profiles?")

            onClicked: helpDialog.open()
        }

        T.ComboBox {
            id: txModulationInput

            Accessible.name: qsTr("Modulation")
            Layout.preferredWidth: 120
            currentIndex: 0
            model: ZepManager.tx.modulationList
            textRole: "display"
        }

        T.SetButton {
            mAcceptable: txModulationInput.currentIndex >= 0 && txModulationInput.currentIndex < txModulationInput.count
            mToolTip: qsTr("Apply chosen modulation")

            onClicked: ZepManager.tx.changeModulationRadioConfiguration(txModulationInput.currentIndex)
        }

        T.SetButton {
            id: uploadConfBtn

            icon.source: "qrc:/images/import.svg"
            mToolTip: qsTr("Upload your radio configuration from binary file")

            onClicked: fileDialog.open()
        }
    }

    Label {
        text: qsTr("Modulation: %1").arg(ZepManager.tx.modulationModel.modulation)
        textFormat: Text.PlainText
    }

    Label {
        text: qsTr("Frequency: %1 - %2 Hz").arg(String(root.modulation.frequencyMin)).arg(String(root.modulation.frequencyMax))
        textFormat: Text.PlainText
    }

    Label {
        text: qsTr("Power: %1 dBm").arg(String(root.modulation.power))
        textFormat: Text.PlainText
    }

    T.UnitLabel {
        Layout.topMargin: 8
        opacity: 0.5
        text: qsTr("TX payloads length must be %1 bytes").arg(ZepManager.tx.modulationModel.allowedSizeListStr) + (root.zep2ModuleSelected ? qsTr(" (minus 2 bytes if ACK or downlink are enabled).") : ".")
        textFormat: Text.PlainText
    }

    Item {
        Layout.fillHeight: true
    }

    TutoDialog {
        id: helpDialog

        tutoText: Strings.tuto.modulation
        width: root.width
    }

    T.FileDialog {
        id: fileDialog

        fileMode: FileDialog.OpenFile
        mOverlay: root.Overlay.overlay
        nameFilters: [qsTr("Binary files (*.bin)")]
        title: qsTr("Please choose your radio configuration binary file")

        onAccepted: ZepManager.tx.importRadioConfFile(fileDialog.currentFile)
    }

    Connections {
        function onModulationChanged(idx: int) {
            txModulationInput.currentIndex = idx;
        }

        target: ZepManager.tx.modulationModel
    }
}
