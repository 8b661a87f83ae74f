// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../types" as T

/// How the passes are to be predicted.
GridLayout {
    id: root

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool enableInput: g_enableInput
    readonly property bool rangerModuleSelected: g_rangerModuleSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    // Untyped, for the tools know no type of its bytes.
    readonly property var mProfile: ZepManager.tx.prepassProfile

    // A Ranger has no button that would send its fields: each takes an acceptable number at once, and half a text must
    // not be overwritten by the number that was taken from it.
    property Item mWritten: null

    function takeAtOnce(field: Item, take: var): void {
        if (rangerModuleSelected) {
            mWritten = field;
            take();
            mWritten = null;
        }
    }

    function show(field: TextField, value: real): void {
        if (field !== mWritten) {
            field.text = value;
        }
    }

    // Whatever was typed over, also where the module says what is known: only the signal tells of that.
    function showConfig(): void {
        const config = mProfile.config;
        show(durationField, config.predictionDuration);
        show(elevationField, config.minElevation);
        show(passDurationField, config.minPassDuration);
    }

    columns: 3
    rowSpacing: 0
    rows: root.zep2ModuleSelected ? 4 : 3

    Component.onCompleted: showConfig()

    Heading {
        id: configHeading

        text: qsTr("Pass prediction")
    }

    RowLayout {
        Layout.columnSpan: 2
        spacing: 0

        T.GetButton {
            Accessible.name: configHeading.text + ": " + mToolTip

            onClicked: ZepManager.getPrepassConfig()
        }

        T.SetButton {
            Accessible.name: configHeading.text + ": " + mToolTip
            mAcceptable: durationField.acceptableInput && elevationField.acceptableInput && passDurationField.acceptableInput
            visible: !root.rangerModuleSelected

            onClicked: ZepManager.setPrepassConfig(Number(durationField.text), Number(elevationField.text), Number(passDurationField.text))
        }
    }

    Label {
        text: qsTr("Duration")
        visible: root.zep2ModuleSelected
    }

    // 4368 hours are the most that the portal predicts.
    T.NumberField {
        id: durationField

        Accessible.name: qsTr("Duration")
        enabled: root.enableInput
        mFrom: 0
        mTo: 182
        mToolTip: qsTr("Duration for prediction calculation (in days)")
        visible: root.zep2ModuleSelected
    }

    T.UnitLabel {
        text: qsTr("days(s)")
        visible: root.zep2ModuleSelected
    }

    Label {
        text: qsTr("Min. elevation")
    }

    T.NumberField {
        id: elevationField

        Accessible.name: qsTr("Min. elevation")
        enabled: root.enableInput
        mDecimals: 2
        mFrom: 0
        mTo: 90
        mToolTip: qsTr("Minimum elevation (in °)")

        onEdited: number => root.takeAtOnce(elevationField, () => root.mProfile.setConfigMinElevation(number))
    }

    T.UnitLabel {
        text: "°"
    }

    Label {
        text: qsTr("Min. pass duration")
    }

    T.NumberField {
        id: passDurationField

        Accessible.name: qsTr("Min. pass duration")
        enabled: root.enableInput
        mFrom: 0
        mTo: 60
        mToolTip: qsTr("Minimum pass duration (in minutes)")

        onEdited: number => root.takeAtOnce(passDurationField, () => root.mProfile.setConfigMinPassDuration(number))
    }

    T.UnitLabel {
        text: qsTr("minutes(s)")
    }

    Connections {
        function onConfigChanged() {
            root.showConfig();
        }

        target: ZepManager.tx.prepassProfile
    }

    Connections {
        function onDisconnected() {
            root.showConfig();
        }

        target: ZepManager
    }

    component Heading: Label {
        font.bold: true
        font.pointSize: 10
    }
}
