// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Controls.impl
import QtQuick.Layouts
import Settings
import Style
import com.sarvane.qml
import "types" as T
import "views"

/// The look of the interface, what this program is and, for experts, the settings of the module and the log.
Item {
    id: root

    readonly property string logViewTitle: qsTr("Misc / Logs")
    readonly property string moduleSettingsTitle: qsTr("Module settings")
    readonly property string uiSettingsTitle: qsTr("UI settings")

    readonly property bool mExpert: Settings.mode === ZepManager.EXPERT

    property bool connected: false

    function logo(name: string): string {
        return "qrc:/images/" + name + (Settings.darkTheme ? "_logo_dark.svg" : "_logo_light.svg");
    }

    ColumnLayout {
        id: page

        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        width: parent.width * (root.mExpert ? 0.8 : 0.4)

        Item {
            Layout.fillHeight: true
        }

        RowLayout {
            spacing: Style.size.panelMargin

            ColumnLayout {
                id: leftColumn

                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true

                T.Label {
                    Layout.alignment: root.mExpert ? Qt.AlignLeft : Qt.AlignHCenter
                    text: root.uiSettingsTitle
                }

                T.Pane {
                    Layout.fillWidth: true

                    RowLayout {
                        anchors.fill: parent

                        ColorImage {
                            color: Material.foreground
                            source: "qrc:/images/day_night.svg"
                            sourceSize.width: 24
                        }

                        Label {
                            text: qsTr("Theme")
                        }

                        Item {
                            Layout.fillWidth: true
                        }

                        RadioButton {
                            checked: Settings.darkTheme
                            text: qsTr("Dark")

                            onClicked: Settings.darkTheme = true
                        }

                        RadioButton {
                            checked: !Settings.darkTheme
                            text: qsTr("Light")

                            onClicked: Settings.darkTheme = false
                        }
                    }
                }

                T.Label {
                    Layout.topMargin: Style.size.panelPadding
                    text: root.connected ? (ZepManager.board?.name ?? "") + " " + root.moduleSettingsTitle : root.moduleSettingsTitle
                    textFormat: Text.PlainText
                    visible: root.mExpert
                }

                T.Pane {
                    id: moduleParametersPane

                    Layout.fillWidth: true
                    clip: true
                    enabled: root.connected
                    visible: root.mExpert

                    ModuleSettingsView {}
                }

                Label {
                    Layout.fillWidth: true
                    Layout.topMargin: 5
                    color: Style.color.sarvanePink
                    font.italic: true
                    font.pointSize: 10
                    text: qsTr("Please be aware that 'Expert' commands can <b>damage</b> the module if they are not used properly!")
                    textFormat: Text.StyledText
                    visible: root.mExpert
                    wrapMode: Text.Wrap
                }
            }

            ColumnLayout {
                Layout.alignment: Qt.AlignTop
                Layout.fillHeight: true
                Layout.maximumHeight: leftColumn.implicitHeight
                Layout.preferredHeight: Layout.maximumHeight
                Layout.preferredWidth: page.width / 2
                clip: true
                visible: root.mExpert

                T.Label {
                    text: root.logViewTitle
                }

                T.LogFrame {
                    Layout.fillHeight: true
                    Layout.fillWidth: true
                    mName: qsTr("Expert log lines")
                }
            }
        }

        Item {
            Layout.fillHeight: true
        }

        RowLayout {
            Layout.alignment: Qt.AlignHCenter

            Label {
                text: "<b>" + Qt.application.name + " " + Qt.application.version + "</b> - " + qsTr("Powered by ")
                textFormat: Text.StyledText
            }

            Image {
                source: root.logo("sarvane")
                sourceSize.width: 60

                Accessible.name: "Sarvane"
                Accessible.role: Accessible.Graphic
            }
        }

        Label {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("Free software under the GNU General Public License, version 3 or later. ") + qsTr("Based on Qt %1 under LGPLv3").arg(QT_VERSION) // qmllint disable unqualified
            wrapMode: Text.Wrap
        }

        RowLayout {
            Layout.alignment: Qt.AlignHCenter

            Label {
                text: qsTr("Developed by")
            }

            Image {
                source: root.logo("dunmoor")
                sourceSize.width: 64

                Accessible.name: "Dunmoor"
                Accessible.role: Accessible.Graphic
            }
        }
    }

    Connections {
        function onConnected() {
            root.connected = true;
        }

        function onDisconnected() {
            root.connected = false;
        }

        target: ZepManager
    }
}
