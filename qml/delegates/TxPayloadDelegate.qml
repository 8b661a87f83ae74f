// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts

import com.sarvane.qml
import Payload
import Style

import "../types" as T

// One payload of the list: its state in the running sequence, its message and its options.
ItemDelegate {
    id: root

    required property int index
    // For writing; what is shown reads the roles below, which keep what a change brought. The list itself forgets a
    // status of the sequence as soon as it has told it.
    required property var model
    required property bool optionAck
    required property bool optionImportant
    required property bool optionMail
    required property int redundancy
    required property int status
    required property int txCount

    // Untyped, for what the tools do not know of a list.
    readonly property var mList: ListView.view
    readonly property bool running: ZepManager.tx.sequenceRunning
    readonly property bool enableEditing: !running || index > mList.mCurrentRow

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool importantTxOptionEnabled: g_importantTxOptionEnabled
    readonly property bool prepassOnModuleProfileSelected: g_prepassOnModuleProfileSelected
    readonly property bool prepassProfileSelected: g_prepassProfileSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    readonly property string mName: "P" + index

    checkable: !running
    focusPolicy: Qt.TabFocus
    horizontalPadding: 0
    width: ListView.view.width

    Accessible.name: mName

    onCheckedChanged: mList.show(index)

    background: Rectangle {
        color: root.down || root.visualFocus ? root.Material.rippleColor : "transparent"
    }
    contentItem: ColumnLayout {
        spacing: 0

        RowLayout {
            spacing: 0

            BusyIndicator {
                Layout.preferredHeight: 32
                Layout.preferredWidth: 32
                Material.accent: root.status === Status.ACTIVE ? Style.color.sarvaneYellow : Style.color.sarvanePink
                running: visible
                visible: root.running && (root.status === Status.PENDING || root.status === Status.ACTIVE)

                Accessible.name: root.status === Status.ACTIVE ? qsTr("%1 active").arg(root.mName) : qsTr("%1 pending").arg(root.mName)
            }

            ToolButton {
                Layout.preferredHeight: 32
                Layout.preferredWidth: 32
                icon.color: Style.color.lightGreen
                icon.source: "qrc:/images/checkmark.svg"
                visible: root.running && root.status === Status.COMPLETE

                Accessible.name: qsTr("%1 complete").arg(root.mName)
            }

            Label {
                Layout.leftMargin: root.running ? 5 : 10
                font.pointSize: 10
                // An acknowledged payload is repeated as often as it takes.
                text: !root.prepassProfileSelected && root.optionAck ? "<b>X/</b>?" : "<b>" + root.txCount + "</b>/" + root.redundancy
                textFormat: Text.StyledText
            }

            Label {
                Layout.leftMargin: 10
                font.pointSize: 12
                text: root.mName
            }

            PayloadField {
                Layout.fillWidth: true
                Layout.leftMargin: 10
                Layout.rightMargin: 15
                enabled: root.enableEditing
                font.bold: root.running && root.status === Status.ACTIVE
                mModel: root.model
                mStatus: root.status

                Accessible.name: qsTr("%1 message").arg(root.mName)
            }

            OptionSwitch {
                checked: root.optionAck && !root.prepassProfileSelected
                enabled: root.enableEditing && !root.prepassProfileSelected
                visible: root.zep2ModuleSelected

                Accessible.name: qsTr("%1 ACK").arg(root.mName)

                onChosen: on => {
                    if (on) {
                        root.model.optionMail = false;
                    }
                    root.model.optionAck = on;
                }
            }

            OptionSwitch {
                checked: root.optionMail && !root.prepassProfileSelected
                enabled: root.enableEditing && !root.prepassProfileSelected
                visible: root.zep2ModuleSelected

                Accessible.name: qsTr("%1 downlink").arg(root.mName)

                onChosen: on => {
                    if (on) {
                        root.model.optionAck = false;
                    }
                    root.model.optionMail = on;
                }
            }

            OptionSwitch {
                checked: root.optionImportant
                enabled: root.enableEditing
                visible: root.importantTxOptionEnabled && (root.prepassProfileSelected || root.prepassOnModuleProfileSelected)

                Accessible.name: qsTr("%1 importance").arg(root.mName)

                onChosen: on => root.model.optionImportant = on
            }
        }

        T.Button {
            Layout.leftMargin: 15
            Layout.topMargin: 15
            mColor: Style.color.lightRed
            mText: qsTr("Delete")
            visible: root.checked && !root.running

            Accessible.name: qsTr("Delete %1").arg(root.mName)

            onClicked: ZepManager.tx.payloadListModel.remove(root.index)
        }
    }

    component OptionSwitch: T.Switch {
        id: option

        signal chosen(on: bool)

        onClicked: option.chosen(option.checked)
    }
}
