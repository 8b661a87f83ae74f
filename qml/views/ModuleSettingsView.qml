// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../types" as T

/// What an expert reads and sets on a module beside the dashboard, and a line for any command.
ColumnLayout {
    id: root

    readonly property bool zep1ModuleSelected: g_zep1ModuleSelected // qmllint disable unqualified

    // Untyped, for the small number that the tools know no type of.
    readonly property var board: ZepManager.board

    anchors.fill: parent

    GridLayout {
        columns: 5
        rowSpacing: 0
        visible: root.zep1ModuleSelected

        Label {
            id: frequencyLabel

            text: qsTr("Tx frequency <i>(MHz)</i>")
            textFormat: Text.StyledText
        }

        Item {
            Layout.fillWidth: true
        }

        TextField {
            id: frequencyInput

            // A module only tells its frequency, so what is typed does not last.
            function shownFrequency(): string {
                const frequency = root.board?.txFrequency ?? 0;
                return frequency === 0 ? qsTr("NA") : String(frequency / 1000000);
            }

            Accessible.name: qsTr("Tx frequency")
            Layout.preferredWidth: powerBox.width
            bottomPadding: 8
            horizontalAlignment: TextInput.AlignHCenter

            onActiveFocusChanged: text = shownFrequency()

            Binding on text {
                restoreMode: Binding.RestoreNone
                value: frequencyInput.shownFrequency()
            }
        }

        T.GetButton {
            Accessible.name: frequencyInput.Accessible.name + ": " + mToolTip

            onClicked: ZepManager.getTxFrequency()
        }

        T.SetButton {
            Accessible.name: frequencyInput.Accessible.name + ": " + mToolTip
            enabled: false
        }

        Label {
            text: qsTr("Tx power <i>(mW)</i>")
            textFormat: Text.StyledText
        }

        Item {
            Layout.fillWidth: true
        }

        T.ComboBox {
            id: powerBox

            // A power that is none of the entries selects none.
            function indexOfPower(): int {
                return root.board ? indexOfValue(root.board.txPower) : 0;
            }

            Accessible.name: qsTr("Tx power")
            implicitWidth: 150
            model: [
                {
                    "value": 0,
                    "text": qsTr("NA")
                },
                {
                    "value": 1000,
                    "text": qsTr("1000 (default)")
                },
                {
                    "value": 750,
                    "text": "750"
                },
                {
                    "value": 500,
                    "text": "500"
                },
                {
                    "value": 250,
                    "text": "250"
                },
                {
                    "value": 100,
                    "text": "100"
                }
            ]
            textRole: "text"
            valueRole: "value"

            onActiveFocusChanged: {
                if (!activeFocus && !powerSetButton.activeFocus) {
                    currentIndex = indexOfPower();
                }
            }

            Binding on currentIndex {
                restoreMode: Binding.RestoreNone
                value: powerBox.indexOfPower()
            }
        }

        T.GetButton {
            Accessible.name: powerBox.Accessible.name + ": " + mToolTip

            onClicked: ZepManager.getTxPower()
        }

        T.SetButton {
            id: powerSetButton

            Accessible.name: powerBox.Accessible.name + ": " + mToolTip
            mAcceptable: powerBox.currentIndex >= 0

            onClicked: ZepManager.setTxPower(powerBox.currentValue)
        }
    }

    RowLayout {
        spacing: 0

        Label {
            id: customLabel

            text: qsTr("Custom AT command")
        }

        T.CommandField {
            id: customInput

            // The user is responsible for the flow of commands, so a running sequence does not hold this one back.
            function send(): void {
                customSpinner.visible = true;
                remember();
                ZepManager.requestCustomCmd(text);
            }

            Accessible.name: customLabel.text
            Layout.fillWidth: true
            Layout.leftMargin: 10
            mToolTip: qsTr("Enter any AT command")
            mWords: root.board?.commands() ?? []
            placeholderText: qsTr("AT+...")
            validator: RegularExpressionValidator {
                regularExpression: /^AT\+.+/
            }

            onAccepted: send()
        }

        T.SetButton {
            Accessible.name: customLabel.text + ": " + mToolTip
            enabled: customInput.acceptableInput
            visible: !customSpinner.visible

            onClicked: customInput.send()
        }

        T.BusyIndicator {
            id: customSpinner

            Accessible.name: qsTr("Waiting for the answer to the custom AT command")
            Layout.leftMargin: 4
            Layout.rightMargin: 4
            visible: false
        }
    }

    Connections {
        function onCustomCmdCompleted() {
            customSpinner.visible = false;
        }

        // The board of an ended session goes without a word.
        function onDisconnected() {
            frequencyInput.text = frequencyInput.shownFrequency();
            powerBox.currentIndex = powerBox.indexOfPower();
            customInput.clear();
        }

        target: ZepManager
    }
}
