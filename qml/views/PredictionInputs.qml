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
    readonly property var mConfig: ZepManager.tx.prepassProfile.config

    columns: 3
    rowSpacing: 0
    rows: root.zep2ModuleSelected ? 4 : 3

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
            enabled: durationField.acceptableInput && elevationField.acceptableInput && passDurationField.acceptableInput && root.enableInput
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
        text: root.mConfig.predictionDuration
        visible: root.zep2ModuleSelected
    }

    T.UnitLabel {
        text: qsTr("days(s)")
        visible: root.zep2ModuleSelected
    }

    Label {
        text: qsTr("Min. elevation")
    }

    ConfigField {
        id: elevationField

        Accessible.name: qsTr("Min. elevation")
        mDecimals: 2
        mFrom: 0
        mTo: 90
        mToolTip: qsTr("Minimum elevation (in °)")
        mValue: root.mConfig.minElevation

        onChosen: number => ZepManager.tx.prepassProfile.setConfigMinElevation(number)
    }

    T.UnitLabel {
        text: "°"
    }

    Label {
        text: qsTr("Min. pass duration")
    }

    ConfigField {
        id: passDurationField

        Accessible.name: qsTr("Min. pass duration")
        mFrom: 0
        mTo: 60
        mToolTip: qsTr("Minimum pass duration (in minutes)")
        mValue: root.mConfig.minPassDuration

        onChosen: number => ZepManager.tx.prepassProfile.setConfigMinPassDuration(number)
    }

    T.UnitLabel {
        text: qsTr("minutes(s)")
    }

    // A Ranger has no button that would send the field: it takes each acceptable number at once.
    component ConfigField: T.NumberField {
        id: configField

        required property real mValue

        signal chosen(number: real)

        enabled: root.enableInput

        // While the field is written in, a number taken from half a text must not overwrite the text.
        Binding on text {
            restoreMode: Binding.RestoreNone
            value: configField.mValue
            when: !(root.rangerModuleSelected && configField.activeFocus)
        }

        onEdited: number => {
            if (root.rangerModuleSelected) {
                configField.chosen(number);
            }
        }
    }

    component Heading: Label {
        font.bold: true
        font.pointSize: 10
    }
}
