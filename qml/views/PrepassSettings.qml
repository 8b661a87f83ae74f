// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../dialogs"
import "../types" as T

// The parameters of transmissions that wait for a satellite: the clock and, on a Ranger, the redundancy.
GridLayout {
    id: root

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool enableInput: g_enableInput
    readonly property bool prepassOnModuleProfileSelected: g_prepassOnModuleProfileSelected
    readonly property bool rangerModuleSelected: g_rangerModuleSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    // Untyped, for the small numbers that the tools know no type of.
    readonly property var profile: ZepManager.tx.prepassProfile

    readonly property alias prepassModuleBasedSwitch: prepassModuleBasedSwitch

    columnSpacing: rangerModuleSelected ? 5 : 15
    columns: 2
    rowSpacing: 0
    rows: 3

    Label {
        id: utcLabel

        text: qsTr("UTC time")
    }

    RowLayout {
        spacing: 0

        TextField {
            Accessible.name: utcLabel.text
            Layout.preferredWidth: 150
            bottomPadding: 8
            color: Material.foreground
            enabled: false
            text: ZepManager.tx.utcTime
        }

        T.BusyIndicator {
            id: spinner

            Accessible.name: qsTr("Setting the UTC time")
            Layout.leftMargin: 8
            Layout.rightMargin: 16
            visible: false
        }

        T.ToolButton {
            enabled: root.enableInput
            icon.source: "qrc:/images/pencil.svg"
            mToolTip: qsTr("Choose a custom UTC date and time")
            visible: !spinner.visible

            onClicked: utcDialog.open()
        }

        T.GetButton {
            Accessible.name: utcLabel.text + ": " + mToolTip
            visible: !spinner.visible && (root.zep2ModuleSelected || root.rangerModuleSelected)

            onClicked: ZepManager.getModuleUtcDate()
        }
    }

    Label {
        id: redundancyLabel

        text: qsTr("Redundancy")
        visible: root.rangerModuleSelected
    }

    RowLayout {
        spacing: 5
        visible: root.rangerModuleSelected

        T.NumberField {
            id: redundancyPrepassInput

            Accessible.name: redundancyLabel.text
            mFrom: 1
            mTo: 10
            mToolTip: qsTr("Number of times a given payload should be transmitted (notion of QoS)")

            Binding on text {
                restoreMode: Binding.RestoreNone
                value: root.profile.redundancy
                when: root.prepassOnModuleProfileSelected
            }

            onEdited: number => root.profile.redundancy = number
        }

        T.UnitLabel {
            text: qsTr("time(s)")
        }

        T.GetButton {
            Accessible.name: redundancyLabel.text + ": " + mToolTip

            onClicked: ZepManager.getTxRedundancy()
        }
    }

    // Not offered at present; the state of the switch is read all the same.
    Label {
        text: qsTr("Tx scheduler")
        visible: false
    }

    RowLayout {
        visible: false

        Label {
            text: "UI"
        }

        T.Switch {
            id: prepassModuleBasedSwitch

            property bool wasChecked: root.prepassOnModuleProfileSelected

            Accessible.name: qsTr("Tx scheduler")
            checked: root.prepassOnModuleProfileSelected
        }

        Label {
            text: qsTr("ZEP module")
        }
    }

    T.UnitLabel {
        Layout.columnSpan: 2
        Layout.topMargin: 8
        opacity: 0.5
        text: qsTr("Redundancy: <b>4</b> (default) - Period : <b>60s</b>")
        textFormat: Text.StyledText
        visible: !root.rangerModuleSelected
    }

    UtcDialog {
        id: utcDialog

        onAboutToShow: spinner.visible = true
        onRejected: spinner.visible = false
    }

    Connections {
        function onLoadPrepassDataCompleted() {
            spinner.visible = false;
        }

        target: ZepManager.tx
    }

    Connections {
        function onDisconnected() {
            redundancyPrepassInput.text = root.profile.redundancy;
        }

        target: ZepManager
    }
}
