// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../types" as T

/// Where the beacon stands, and the bulletins of the satellites.
GridLayout {
    id: root

    /// A message of the page shows, which the tooltip of the download would cover.
    property bool mMessageShown: false

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool enableInput: g_enableInput
    readonly property bool rangerModuleSelected: g_rangerModuleSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    function bulletinsUploadable(): bool {
        return ZepManager.tx.prepassProfile.satelliteAopModel.rowCount() !== 0 && enableInput;
    }

    columnSpacing: 10
    columns: 2
    rowSpacing: 0

    Heading {
        id: positionHeading

        text: qsTr("GNSS position")
    }

    RowLayout {
        spacing: 0

        T.GetButton {
            Accessible.name: positionHeading.text + ": " + mToolTip

            onClicked: ZepManager.getGnssPosition()
        }

        T.SetButton {
            Accessible.name: positionHeading.text + ": " + mToolTip
            mAcceptable: latitudeField.acceptableInput && longitudeField.acceptableInput
            visible: !root.rangerModuleSelected

            onClicked: ZepManager.setGnssPosition(Number(latitudeField.text), Number(longitudeField.text))
        }
    }

    Label {
        text: qsTr("Latitude")
    }

    RowLayout {
        PositionField {
            id: latitudeField

            Accessible.name: qsTr("Latitude")
            mToolTip: qsTr("Geodetic latitude of the beacon")
            text: ZepManager.tx.prepassProfile.position.latitude.toFixed(2)
        }

        T.UnitLabel {
            text: "°"
        }
    }

    Label {
        text: qsTr("Longitude")
    }

    RowLayout {
        PositionField {
            id: longitudeField

            Accessible.name: qsTr("Longitude")
            mToolTip: qsTr("Geodetic longitude of the beacon")
            text: ZepManager.tx.prepassProfile.position.longitude.toFixed(2)
        }

        T.UnitLabel {
            text: "°"
        }
    }

    Heading {
        id: bulletinHeading

        Layout.topMargin: 15
        text: qsTr("AOP data")
    }

    RowLayout {
        Layout.topMargin: 15
        spacing: 0

        T.DownloadButton {
            mToolTipHeldBack: root.mMessageShown
        }

        T.GetButton {
            Accessible.name: bulletinHeading.text + ": " + mToolTip

            onClicked: ZepManager.getAopData()
        }

        T.SetButton {
            id: aopSetBtn

            Accessible.name: bulletinHeading.text + ": " + mToolTip
            enabled: root.bulletinsUploadable()

            onClicked: ZepManager.setAopDataAndConstellationStatus()
        }
    }

    // The number of bulletins tells nobody that it changed.
    Connections {
        function onAopDataDownloadFinished() {
            aopSetBtn.enabled = Qt.binding(() => root.bulletinsUploadable());
        }

        target: ZepManager.tx.prepassProfile
    }

    Connections {
        function onSequenceRunningChanged() {
            aopSetBtn.enabled = !ZepManager.tx.sequenceRunning && ZepManager.tx.prepassProfile.satelliteAopModel.rowCount() !== 0;
        }

        target: ZepManager.tx
    }

    component Heading: Label {
        font.bold: true
        font.pointSize: 10
    }

    // A longitude has the limits of a latitude.
    component PositionField: T.NumberField {
        enabled: root.zep2ModuleSelected && root.enableInput
        mDecimals: 6
        mFrom: -90
        mTo: 90
    }
}
