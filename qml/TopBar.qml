// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import Settings
import Shortcuts
import Style
import com.sarvane.qml
import "dialogs"
import "types" as T

/// The bar above all pages. It is also what turns the pages: on the user's wish, and with the session.
ToolBar {
    id: root

    required property Item dashboardPage
    required property Item settingsPage
    required property StackView stackView
    property string previousState

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool tbxModuleSelected: g_tbxModuleSelected
    readonly property bool zep1ModuleSelected: g_zep1ModuleSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    state: "connectionPage"

    background: Rectangle {
        implicitHeight: 48

        gradient: Gradient {
            orientation: Gradient.Horizontal

            GradientStop {
                color: Style.color.sarvanePink
                position: 0.0
            }

            GradientStop {
                color: Style.color.sarvaneYellow
                position: 1.0
            }
        }
    }

    states: [
        State {
            name: "connectionPage"

            PropertyChanges {
                target: pageTitle
                text: qsTr("Connect your ZEP Evaluation Kit (EVK)")
            }
        },
        State {
            name: "dashboardPage"

            PropertyChanges {
                target: pageTitle
                text: Settings.mode === ZepManager.EXPERT ? qsTr("Expert Mode") : qsTr("Basic Mode")
            }

            PropertyChanges {
                target: boardGroup
                visible: true
            }
        },
        State {
            name: "settingsPage"

            PropertyChanges {
                target: pageButton
                Accessible.name: qsTr("Return")
                icon.source: "qrc:/images/return.svg"
            }

            PropertyChanges {
                target: pageTitle
                text: qsTr("Settings")
            }
        }
    ]

    Connections {
        target: ZepManager

        function onConnected() {
            root.stackView.push(root.dashboardPage);
            root.state = "dashboardPage";
        }

        function onDisconnected() {
            if (root.stackView.currentItem === root.settingsPage) {
                root.stackView.pop();
            }
            root.stackView.pop();
            disconnectDialog.hideSpinner();
            root.state = "connectionPage";
            disconnectDialog.close();
        }
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 20
        anchors.rightMargin: 20

        T.ToolButton {
            id: pageButton

            Accessible.name: qsTr("Settings")
            icon.color: "white"
            icon.source: "qrc:/images/setting.svg"
            mKey: Shortcuts.settings
            mToolTip: Accessible.name

            onClicked: {
                if (root.stackView.currentItem === root.settingsPage) {
                    root.state = root.previousState;
                    root.stackView.pop();
                } else {
                    root.previousState = root.state;
                    root.state = "settingsPage";
                    root.stackView.push(root.settingsPage);
                }
            }
        }

        Label {
            id: pageTitle

            color: "white"
            font.bold: true
            font.pointSize: 15
        }

        Item {
            Layout.fillWidth: true
        }

        RowLayout {
            id: boardGroup

            // In a narrow window the labels are cut, so that the buttons stay.
            Layout.fillWidth: true
            Layout.maximumWidth: implicitWidth
            Material.foreground: Style.color.sarvaneDark
            // What is not to be seen must not keep the focus.
            enabled: visible
            spacing: 0
            visible: false

            T.ToolButton {
                icon.source: "qrc:/images/refresh.svg"
                mToolTip: qsTr("Request ZEP info")

                onClicked: ZepManager.getHwInfo()
            }

            Item {
                Layout.fillWidth: true
                clip: true
                implicitHeight: labels.implicitHeight
                implicitWidth: labels.implicitWidth

                Row {
                    id: labels

                    BoardLabel {
                        text: qsTr("ID: %1, FW: %2, ").arg(ZepManager.board?.id ?? "").arg(ZepManager.board?.firmwareVersion ?? "")
                    }

                    BoardLabel {
                        text: qsTr("S/N: %1, ").arg(ZepManager.board?.serialNumber ?? "")
                        visible: root.zep1ModuleSelected
                    }

                    BoardLabel {
                        text: qsTr("ADDR: %1, ").arg(ZepManager.board?.addr ?? "")
                        visible: root.zep2ModuleSelected || root.tbxModuleSelected
                    }

                    BoardLabel {
                        font.bold: true
                        text: qsTr("%1 connected to %2").arg(ZepManager.board?.name ?? "").arg(ZepManager.board?.port ?? "")
                    }
                }
            }

            T.ToolButton {
                id: disconnectButton

                Accessible.name: qsTr("Disconnect")
                icon.source: "qrc:/images/on_off.svg"
                mKey: Shortcuts.disconnect
                mToolTip: Accessible.name

                onClicked: disconnectDialog.open()
            }
        }

        DisconnectDialog {
            id: disconnectDialog
        }

        T.ButtonShortcut {
            mButton: pageButton
            sequence: Shortcuts.settings
        }

        T.ButtonShortcut {
            mButton: disconnectButton
            sequence: Shortcuts.disconnect
        }
    }

    // What the device says of itself is shown as it stands.
    component BoardLabel: Label {
        font.pointSize: 11
        textFormat: Text.PlainText
    }
}
