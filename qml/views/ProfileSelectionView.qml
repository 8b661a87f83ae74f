// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../dialogs"
import "../types" as T

// The transmission settings: the profile, the modulation and the LoRa connectivity, a tab for each.
ColumnLayout {
    id: root

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool rangerModuleSelected: g_rangerModuleSelected
    readonly property bool tbxModuleSelected: g_tbxModuleSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    TabBar {
        id: tabBar

        // By a key; the bar itself would stop at tabs that are hidden, and show their views.
        function step(by: int): void {
            let index = currentIndex + by;
            while (index >= 0 && index < count && !itemAt(index).visible) {
                index += by;
            }
            if (index >= 0 && index < count) {
                setCurrentIndex(index);
            }
        }

        Layout.fillWidth: true

        ViewTab {
            text: qsTr("Sarvane profile")
        }

        ViewTab {
            text: qsTr("Modulation")
            visible: root.zep2ModuleSelected || root.tbxModuleSelected
            width: visible ? mLabelWidth : 0
        }

        ViewTab {
            id: loraTab

            text: qsTr("LoRa connectivity")
            visible: root.rangerModuleSelected

            onHoveredChanged: {
                if (hovered) {
                    loraDialog.open();
                } else {
                    loraDialog.close();
                }
            }
        }
    }

    StackLayout {
        Layout.fillWidth: true
        currentIndex: tabBar.currentIndex

        // In controls of their own: layouts right below a StackLayout can miss the next change inside them (Qt 6.4).
        Control {
            contentItem: ProfileTab {}
        }

        Control {
            contentItem: ModulationTab {}
        }

        LoraTab {
            id: loraSettings
        }
    }

    LoraDialog {
        id: loraDialog

        x: loraTab.x + loraTab.mLabelWidth + 8
        y: loraSettings.loraAckCheckbox.y - height + loraTab.height
    }

    Connections {
        function onDisconnected() {
            tabBar.currentIndex = 0;
        }

        target: ZepManager
    }

    component ViewTab: TabButton {
        id: tab

        // Untyped, for what the tools do not know of a bar.
        readonly property var mBar: TabBar.tabBar
        readonly property real mLabelWidth: contentItem.implicitWidth

        Keys.onLeftPressed: mBar.step(-1)
        Keys.onRightPressed: mBar.step(1)
        horizontalPadding: 0
        width: mLabelWidth

        // Not a ripple, which the software renderer draws in the corner of the window.
        background: Rectangle {
            color: tab.down || tab.visualFocus || tab.hovered ? tab.Material.rippleColor : "transparent"
            implicitHeight: tab.Material.touchTarget
        }
        contentItem: T.Label {
            color: tab.checked ? Material.accentColor : Material.foreground
            horizontalAlignment: Text.AlignHCenter
            leftPadding: 8
            rightPadding: 8
            text: tab.text
            verticalAlignment: Text.AlignVCenter
        }
    }
}
