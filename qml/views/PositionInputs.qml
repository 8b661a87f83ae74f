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

    property int mBulletins: 0

    function countBulletins(): void {
        mBulletins = ZepManager.tx.prepassProfile.satelliteAopModel.rowCount();
    }

    columnSpacing: 10
    columns: 2
    rowSpacing: 0

    Component.onCompleted: countBulletins()

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

            onClicked: ZepManager.setGnssPosition(latitudeField.position(), longitudeField.position())
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
            mHeld: ZepManager.tx.prepassProfile.position.latitude
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
            mHeld: ZepManager.tx.prepassProfile.position.longitude
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
            Accessible.name: bulletinHeading.text + ": " + mToolTip
            mAcceptable: root.mBulletins > 0

            onClicked: ZepManager.setAopDataAndConstellationStatus()
        }
    }

    Connections {
        function onPositionChanged() {
            latitudeField.restore();
            longitudeField.restore();
        }

        target: ZepManager.tx.prepassProfile
    }

    Connections {
        function onDisconnected() {
            latitudeField.restore();
            longitudeField.restore();
        }

        target: ZepManager
    }

    // The model has no signal for the number of its rows.
    Connections {
        function onRowsInserted() {
            root.countBulletins();
        }

        function onRowsRemoved() {
            root.countBulletins();
        }

        target: ZepManager.tx.prepassProfile.satelliteAopModel
    }

    component Heading: Label {
        font.bold: true
        font.pointSize: 10
    }

    // A longitude has the limits of a latitude.
    component PositionField: T.NumberField {
        required property real mHeld
        property bool mEdited: false

        /// In degrees. The field shows two decimals of the value held, and must not cut it to them.
        function position(): real {
            return mEdited ? Number(text) : mHeld;
        }

        function restore(): void {
            text = mHeld.toFixed(2);
            mEdited = false;
        }

        enabled: root.zep2ModuleSelected && root.enableInput
        mDecimals: 6
        mFrom: -90
        mTo: 90

        Component.onCompleted: restore()
        onTextEdited: mEdited = true
    }
}
