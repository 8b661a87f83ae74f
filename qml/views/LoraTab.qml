// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../types" as T

// The LoRa settings of a device that has the stack. The item itself stays, for the stack of tabs to show and hide.
Item {
    id: root

    readonly property bool compatible: ZepManager.board?.loraCompatible ?? false
    readonly property bool integrated: ZepManager.board?.loraStackIntegrated ?? false
    // Untyped, for the small numbers that the tools know no type of.
    readonly property var loraConfig: ZepManager.tx.loraConfig

    readonly property alias loraAckCheckbox: loraAckCheckbox

    implicitHeight: compatible ? content.implicitHeight : 0
    implicitWidth: compatible ? content.implicitWidth : 0

    ColumnLayout {
        id: content

        anchors.left: parent.left
        anchors.right: parent.right
        spacing: 0
        visible: root.compatible

        T.Label {
            text: qsTr("Support of LoRa connectivity is available on version >= %1").arg(ZepManager.board?.loraMinVersion ?? "")
            textFormat: Text.PlainText
            visible: !root.integrated
        }

        RowLayout {
            enabled: root.integrated
            spacing: 0

            T.GetButton {
                Accessible.name: qsTr("LoRa") + ": " + mToolTip

                onClicked: ZepManager.getLoRaConfig()
            }

            CheckBox {
                id: loraEnabledCheckbox

                checked: ZepManager.tx.loraEnabled
                text: qsTr("LoRa connectivity")

                onCheckedChanged: {
                    if (ZepManager.tx.loraEnabled !== checked) {
                        ZepManager.tx.loraEnabled = checked;
                    }
                }
            }

            CheckBox {
                id: loraAckCheckbox

                ToolTip.delay: 500
                ToolTip.text: qsTr("Ask for CONFIRMED message or not. If ACK is enabled, the Tx redundancy is not used")
                ToolTip.timeout: 4000
                ToolTip.visible: hovered
                checked: root.loraConfig.ackEnabled
                text: qsTr("ACK")
                visible: loraEnabledCheckbox.checked

                onCheckedChanged: {
                    if (root.loraConfig.ackEnabled !== checked) {
                        root.loraConfig.ackEnabled = checked;
                    }
                }
            }

            RowLayout {
                spacing: 5
                visible: !loraAckCheckbox.checked

                Label {
                    text: "➔  "
                }

                Label {
                    text: qsTr("Redundancy")
                }

                T.NumberField {
                    id: loraRedundancyInput

                    Accessible.name: qsTr("Redundancy")
                    mFrom: 1
                    mTo: 10
                    mToolTip: qsTr("Repeat a Tx payload X times")
                    text: root.loraConfig.redundancy

                    onEdited: number => root.loraConfig.redundancy = number
                }

                T.UnitLabel {
                    text: qsTr("time(s)")
                }
            }
        }

        GridLayout {
            id: loraLayout

            property bool onAppEuiEditing: false
            property bool onAppKeyEditing: false

            Layout.topMargin: 8
            columnSpacing: 10
            columns: 2
            enabled: root.integrated
            rowSpacing: 0
            rows: 3
            visible: loraEnabledCheckbox.checked

            Label {
                text: qsTr("Dev EUI")
            }

            T.HexText {
                id: devEuiText

                mName: qsTr("Dev EUI")
                mValue: root.loraConfig.devEui

                T.HelpButton {
                    mToolTip: qsTr("The device EUI depends on the board HW and cannot be changed")
                }
            }

            Label {
                text: qsTr("App EUI")
            }

            T.HexField {
                id: appEuiField

                mEditing: loraLayout.onAppEuiEditing
                mLength: 16
                mName: qsTr("App EUI")
                mValue: root.loraConfig.appEui

                onConfirmed: digits => root.loraConfig.appEui = digits
                onEditingChosen: on => loraLayout.onAppEuiEditing = on
            }

            Label {
                text: qsTr("App Key")
            }

            T.HexField {
                id: appKeyField

                mEditing: loraLayout.onAppKeyEditing
                mLength: 32
                mName: qsTr("App Key")
                mValue: root.loraConfig.appKey

                onConfirmed: digits => root.loraConfig.appKey = digits
                onEditingChosen: on => loraLayout.onAppKeyEditing = on
            }
        }
    }

    Connections {
        // The values are cleared without a signal, and what was typed for one device must not be sent to the next.
        function onDisconnected() {
            loraLayout.onAppEuiEditing = false;
            loraLayout.onAppKeyEditing = false;
            devEuiText.mValue = Qt.binding(() => root.loraConfig.devEui);
            appEuiField.mValue = Qt.binding(() => root.loraConfig.appEui);
            appEuiField.restore();
            appKeyField.mValue = Qt.binding(() => root.loraConfig.appKey);
            appKeyField.restore();
            loraRedundancyInput.text = Qt.binding(() => root.loraConfig.redundancy);
        }

        target: ZepManager
    }
}
