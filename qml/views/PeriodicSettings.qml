// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../types" as T

// The parameters of transmissions at fixed intervals.
RowLayout {
    id: root

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool enableInput: g_enableInput
    readonly property bool periodicProfileSelected: g_periodicProfileSelected
    readonly property bool rangerModuleSelected: g_rangerModuleSelected
    // qmllint enable unqualified

    // Untyped, for the small numbers that the tools know no type of.
    readonly property var profile: ZepManager.tx.periodicProfile

    // The only delay that a Ranger knows, in seconds.
    readonly property int rangerDelay: 60

    function shownDelay(): int {
        return rangerModuleSelected ? rangerDelay : profile.delay;
    }

    spacing: 5

    GridLayout {
        columnSpacing: 5
        columns: root.rangerModuleSelected ? 4 : 3
        rowSpacing: 0

        Label {
            text: qsTr("Period")
        }

        T.NumberField {
            id: delayInput

            Accessible.name: qsTr("Period")
            enabled: root.enableInput && !root.rangerModuleSelected
            mFrom: 60
            mTo: 255
            mToolTip: qsTr("Time in seconds between two transmissions")

            Binding on text {
                restoreMode: Binding.RestoreNone
                value: root.shownDelay()
                when: root.periodicProfileSelected
            }

            onEdited: number => root.profile.delay = number
        }

        T.UnitLabel {
            Layout.columnSpan: root.rangerModuleSelected ? 2 : 1
            text: qsTr("sec")
        }

        Label {
            id: redundancyLabel

            text: qsTr("Redundancy")
        }

        T.NumberField {
            id: redundancyInput

            Accessible.name: redundancyLabel.text
            enabled: root.enableInput
            mFrom: 1
            mTo: 10
            mToolTip: qsTr("Number of times a given payload should be transmitted (notion of QoS)")

            Binding on text {
                restoreMode: Binding.RestoreNone
                value: root.profile.redundancy
                when: root.periodicProfileSelected
            }

            onEdited: number => root.profile.redundancy = number
        }

        T.UnitLabel {
            text: qsTr("time(s)")
        }

        T.GetButton {
            Accessible.name: redundancyLabel.text + ": " + mToolTip
            visible: root.rangerModuleSelected

            onClicked: ZepManager.getTxRedundancy()
        }
    }

    ToolSeparator {
        Layout.fillHeight: true
        visible: !root.rangerModuleSelected
    }

    Label {
        text: qsTr("Payload interval")
        visible: !root.rangerModuleSelected
    }

    T.NumberField {
        id: periodInput

        Accessible.name: qsTr("Payload interval")
        enabled: root.enableInput
        mFrom: 1
        mTo: 255
        mToolTip: qsTr("Time in minutes between two different payload transmissions")
        visible: !root.rangerModuleSelected

        Binding on text {
            restoreMode: Binding.RestoreNone
            value: root.profile.period
            when: root.periodicProfileSelected
        }

        onEdited: number => root.profile.period = number
    }

    T.UnitLabel {
        text: qsTr("min")
        visible: !root.rangerModuleSelected
    }

    Connections {
        function onSequenceRunningChanged() {
            if (root.periodicProfileSelected) {
                // The last accepted values, in place of what was half typed.
                periodInput.text = root.profile.period;
                redundancyInput.text = root.profile.redundancy;
                delayInput.text = root.shownDelay();
            }
        }

        target: ZepManager.tx
    }
}
