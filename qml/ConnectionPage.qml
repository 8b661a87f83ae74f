// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import Settings
import Shortcuts
import Style
import ZepBoard
import com.sarvane.qml
import "dialogs"
import "types" as T

/// The first page: mode, evaluation kit, port and baud rate, and the button that connects.
Item {
    id: root

    property int board: Settings.module
    property bool changedToExpertMode: false
    property bool mSessionEnded: false

    Component.onCompleted: ZepManager.serialPort.followAdapters()

    // Return connects again, as soon as the kit is plugged in.
    StackView.onActivated: {
        if (mSessionEnded) {
            mSessionEnded = false;
            connectButton.forceActiveFocus();
        }
    }

    ColumnLayout {
        anchors.centerIn: parent
        spacing: 30

        T.Pane {
            bottomPadding: Style.size.panelPadding - 5
            // The connection attempt runs the event loop: nothing here may be changed underneath it.
            enabled: !busyIndicator.running
            topPadding: Style.size.panelPadding

            RowLayout {
                anchors.fill: parent
                spacing: Style.size.panelPadding

                ColumnLayout {
                    Layout.alignment: Qt.AlignTop

                    Component.onCompleted: ZepManager.setMode(Settings.mode)

                    T.Label {
                        text: qsTr("Mode")
                    }

                    RadioButton {
                        id: basicButton

                        checked: Settings.mode === ZepManager.BASIC
                        text: qsTr("Basic")

                        onClicked: {
                            Settings.mode = ZepManager.BASIC;
                            ZepManager.setMode(ZepManager.BASIC);
                            root.changedToExpertMode = false;
                            baudRateBox.currentIndex = 0;
                        }
                    }

                    RadioButton {
                        id: expertButton

                        checked: !basicButton.checked
                        text: qsTr("Expert")

                        onClicked: {
                            Settings.mode = ZepManager.EXPERT;
                            ZepManager.setMode(ZepManager.EXPERT);
                            root.changedToExpertMode = true;
                        }
                    }
                }

                ColumnLayout {
                    Layout.alignment: Qt.AlignTop

                    T.Label {
                        text: qsTr("EVK")
                    }

                    ButtonGroup {
                        id: boardGroup
                    }

                    Repeater {
                        model: [
                            {
                                "text": qsTr("ZEP1"),
                                "board": Module.ZEP1
                            },
                            {
                                "text": qsTr("ZEP2"),
                                "board": Module.ZEP2
                            },
                            {
                                "text": qsTr("TBX (STM32WL)"),
                                "board": Module.TBX
                            },
                            {
                                "text": qsTr("Ranger"),
                                "board": Module.RANGER
                            }
                        ]

                        RadioButton {
                            required property var modelData

                            ButtonGroup.group: boardGroup
                            checked: Settings.module === modelData.board
                            text: modelData.text

                            onClicked: root.board = modelData.board
                        }
                    }
                }

                ColumnLayout {
                    spacing: 0

                    T.Label {
                        text: qsTr("COM port")
                    }

                    RowLayout {
                        spacing: 0

                        T.ComboBox {
                            id: portBox

                            // The rows move when an adapter comes or goes, so the choice is a name.
                            property string chosen
                            property string lastSeen

                            /// Chooses the port of the last session when it appears, or else keeps the choice, or else
                            /// takes the first one.
                            function choose(): void {
                                const last = ZepManager.serialPort.lastPort;
                                if (last !== lastSeen && last !== "") {
                                    chosen = last;
                                }
                                lastSeen = last;
                                if (ZepManager.serialPort.rowOf(chosen) < 0) {
                                    chosen = ZepManager.serialPort.portAt(0);
                                }
                                currentIndex = ZepManager.serialPort.rowOf(chosen);
                            }

                            Accessible.name: qsTr("COM port")
                            implicitWidth: 150
                            model: ZepManager.serialPort.portListModel
                            textRole: "display"

                            Component.onCompleted: choose()
                            onActivated: chosen = currentText
                            onCountChanged: choose()
                        }

                        T.ToolButton {
                            icon.source: "qrc:/images/refresh.svg"
                            mToolTip: qsTr("Refresh list")

                            onClicked: ZepManager.serialPort.enumerate()
                        }
                    }

                    T.UnitLabel {
                        color: Style.color.lightRed
                        text: qsTr("No serial port: plug the kit in")
                        visible: portBox.count === 0
                    }

                    T.Label {
                        text: qsTr("Baudrate")
                        visible: baudRateBox.visible
                    }

                    T.ComboBox {
                        id: baudRateBox

                        Accessible.name: qsTr("Baudrate")
                        implicitWidth: 150
                        model: ["Default", "9600", "115200"]
                        visible: root.changedToExpertMode || Settings.mode === ZepManager.EXPERT
                    }

                    Item {
                        Layout.fillHeight: true
                        Layout.minimumHeight: 30
                    }

                    T.Button {
                        id: connectButton

                        Layout.alignment: Qt.AlignRight
                        Layout.preferredWidth: implicitWidth + 20
                        ToolTip.delay: 1000
                        ToolTip.text: Shortcuts.hint(qsTr("Connect to the evaluation kit"), Shortcuts.connect)
                        ToolTip.timeout: 3000
                        ToolTip.visible: hovered
                        enabled: portBox.count > 0
                        mColor: Material.accentColor
                        mText: qsTr("Connect")

                        onClicked: {
                            busyIndicator.running = true;
                            ZepManager.connect(root.board, portBox.currentText, baudRateBox.currentText);
                        }
                    }
                }
            }
        }

        Image {
            Layout.alignment: Qt.AlignHCenter
            fillMode: Image.PreserveAspectFit
            source: Settings.darkTheme ? "qrc:/images/sarvane_logo_dark.svg" : "qrc:/images/sarvane_logo_light.svg"
            sourceSize.width: 150
        }

        BusyIndicator {
            id: busyIndicator

            Accessible.name: qsTr("Connecting")
            Layout.alignment: Qt.AlignHCenter
            contentItem.visible: running // its fading out stands still behind another page, and would turn unseen for ever
            running: false
        }
    }

    // Never seen: it carries the tooltip.
    Button {
        ToolTip.text: qsTr("More settings available!")
        ToolTip.timeout: 2000
        ToolTip.visible: expertButton.checked && root.changedToExpertMode
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: Style.size.boardMargin
        visible: false
    }

    ToolButton {
        Accessible.name: ToolTip.text
        ToolTip.text: qsTr("Hello!")
        ToolTip.visible: hovered || visualFocus
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        icon.source: "qrc:/images/question.svg"
        opacity: 0.5

        onClicked: welcomeDialog.open()
    }

    T.ButtonShortcut {
        mButton: connectButton
        sequence: Shortcuts.connect
    }

    WelcomeDialog {
        id: welcomeDialog
    }

    Connections {
        target: ZepManager

        function onConnected() {
            busyIndicator.running = false;
            Settings.module = ZepManager.board.module;
        }

        function onDisconnected() {
            root.mSessionEnded = true;
        }
    }

    Connections {
        target: ZepManager.serialPort.portListModel

        function onModelReset() {
            portBox.choose();
        }
    }

    Connections {
        target: ZepManager.serialPort

        function onSerialError() {
            busyIndicator.running = false;
        }
    }
}
