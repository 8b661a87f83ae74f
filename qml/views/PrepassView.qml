// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.Material
import QtQuick.Dialogs
import QtQuick.Layouts
import Shortcuts
import Style
import com.sarvane.qml
import "../dialogs"
import "../types" as T

/// The passes of the satellites: the imported table, or the module's next pass with what it computes it from; and the
/// satellites themselves.
ColumnLayout {
    id: root

    /// A message of the page shows, which the tooltip of the download would cover.
    property bool mMessageShown: false

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool enableInput: g_enableInput
    readonly property bool periodicProfileSelected: g_periodicProfileSelected
    readonly property bool prepassOnModuleProfileSelected: g_prepassOnModuleProfileSelected
    readonly property bool rangerModuleSelected: g_rangerModuleSelected
    // qmllint enable unqualified

    readonly property bool mPredictedByModule: prepassOnModuleProfileSelected || rangerModuleSelected

    anchors.fill: parent
    clip: true
    enabled: !(rangerModuleSelected && periodicProfileSelected)

    RowLayout {
        spacing: 0

        T.Label {
            text: qsTr("Satellite pass predictions")
        }

        Item {
            Layout.fillWidth: true
        }

        T.ToolButton {
            id: nextPassBtn

            enabled: root.enableInput
            icon.source: "qrc:/images/next.svg"
            mToolTip: qsTr("Get next pass")
            visible: tableButton.checked && root.mPredictedByModule && !nextPassSpinner.visible

            onClicked: ZepManager.getSatelliteNextPass()
        }

        T.BusyIndicator {
            id: nextPassSpinner

            Accessible.name: qsTr("Computing satellite next pass...")
            Layout.leftMargin: 12
            Layout.rightMargin: 12
            visible: ZepManager.tx.computingSatelliteNextPass
        }

        T.ToolButton {
            enabled: root.enableInput
            icon.source: "qrc:/images/delete.svg"
            mToolTip: qsTr("Clear data")
            visible: !root.mPredictedByModule && !satelliteButton.checked

            onClicked: ZepManager.tx.clearPrepassData()
        }

        T.ToolButton {
            id: importButton

            enabled: root.enableInput
            icon.source: "qrc:/images/import.svg"
            mKey: Shortcuts.importPasses
            mToolTip: qsTr("Import data")
            visible: !root.mPredictedByModule && !satelliteButton.checked

            onClicked: {
                spinner.visible = true;
                importDialog.open();
            }
        }

        T.CheckableButton {
            id: tableButton

            checkable: !checked
            checked: true
            icon.source: "qrc:/images/table.svg"
            mToolTip: qsTr("Data view")

            onClicked: satelliteButton.checked = false
        }

        T.CheckableButton {
            id: satelliteButton

            checkable: !checked
            icon.source: "qrc:/images/satellite.svg"
            mToolTip: qsTr("Satellite infos")

            onClicked: tableButton.checked = false
        }
    }

    T.PassTable {
        id: passTable

        Layout.fillHeight: true
        Layout.fillWidth: true
        mModel: ZepManager.tx.prepassListModel
        visible: tableButton.checked && !root.mPredictedByModule

        ColumnLayout {
            anchors.centerIn: parent
            visible: passTable.mCount === 0 && !spinner.visible

            HintLabel {
                text: qsTr("No data available.")
            }

            HintLabel {
                text: qsTr("Please import a CSV file exported from HelioWeb")
            }

            HintLabel {
                text: qsTr("(with UTC time zone).")
            }
        }

        BusyIndicator {
            id: spinner

            Accessible.name: qsTr("Importing data")
            Material.accent: Style.color.sarvanePink
            anchors.centerIn: parent
            running: visible
            visible: false
        }
    }

    PredictionView {
        Layout.fillHeight: true
        Layout.fillWidth: true
        mMessageShown: root.mMessageShown
        visible: tableButton.checked && root.mPredictedByModule
    }

    ScrollView {
        id: satelliteScroll

        Layout.fillHeight: true
        Layout.fillWidth: true
        // The tiles follow the width of the view and must not hold it.
        implicitWidth: 0
        visible: satelliteButton.checked

        SatelliteView {
            width: satelliteScroll.width
        }
    }

    T.ButtonShortcut {
        mButton: importButton
        sequence: Shortcuts.importPasses
    }

    T.FileDialog {
        id: importDialog

        fileMode: FileDialog.OpenFile
        mOverlay: root.Overlay.overlay
        nameFilters: [qsTr("CSV files (*.csv)")]
        title: qsTr("Please choose your prepass csv file")

        onAccepted: ZepManager.tx.importPrepassData(currentFile)
        onRejected: spinner.visible = false
    }

    ViewDialog {
        id: errorDialog

        anchors.centerIn: Overlay.overlay
        standardButtons: Dialog.Ok
    }

    Connections {
        function onLoadPrepassDataCompleted(error: string) {
            spinner.visible = false;
            if (error !== "") {
                errorDialog.title = error;
                errorDialog.open();
            }
        }

        target: ZepManager.tx
    }

    component HintLabel: Label {
        Layout.alignment: Qt.AlignHCenter
    }
}
