// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../delegates"
import "../types" as T

/// The sensors of a device and how often it acquires them. An edit stays here until the configuration is uploaded.
T.ExpandableView {
    id: root

    readonly property int checkboxWidth: 60

    readonly property bool enableInput: g_enableInput // qmllint disable unqualified

    // Untyped, for the small number that the tools know no type of.
    readonly property var sensorModel: ZepManager.board?.sensorListModel ?? null

    layoutId: 2
    viewTitle: qsTr("Sensors config")

    mHeader: [
        HeaderLabel {
            Layout.preferredWidth: root.checkboxWidth
            text: qsTr("Enable")
        },
        HeaderLabel {
            Layout.preferredWidth: root.checkboxWidth
            text: qsTr("Alert")
        },
        HeaderLabel {
            id: thresholdLabel

            // In a narrow window it makes room for the rest of the row.
            Layout.fillWidth: true
            Layout.maximumWidth: Layout.preferredWidth
            Layout.minimumWidth: implicitWidth
            Layout.preferredWidth: root.width * 0.35
            horizontalAlignment: Text.AlignRight
            rightPadding: frame.rightPadding
            text: qsTr("Threshold")
        },
        T.ToolButton {
            id: refreshButton

            icon.source: "qrc:/images/refresh.svg"
            mToolTip: qsTr("Get onboard configuration")

            onClicked: ZepManager.getSensorsConfig()
        }
    ]

    Frame {
        id: frame

        Layout.fillHeight: true
        Layout.fillWidth: true

        ListView {
            anchors.fill: parent
            // All rows exist all the time: one of them answers to the choice of a profile.
            cacheBuffer: 1000
            clip: true
            // No row is a current one, which would draw the focus to itself.
            currentIndex: -1
            keyNavigationEnabled: false
            model: root.sensorModel

            ScrollBar.vertical: ScrollBar {
                active: false
            }

            delegate: SensorDelegate {
                checkboxWidth: root.checkboxWidth
                thresholdLabelWidth: thresholdLabel.width - frame.rightPadding + refreshButton.width
            }

            Accessible.name: root.viewTitle
            Accessible.role: Accessible.List
        }
    }

    RowLayout {
        spacing: 10

        Label {
            id: periodLabel

            text: qsTr("Acquisition period")
        }

        T.InputTextField {
            id: periodInput

            function shownPeriod(): string {
                return root.sensorModel?.acquisitionPeriod ?? "";
            }

            Accessible.name: periodLabel.text
            enabled: root.enableInput
            mToolTip: qsTr("Sensors acquisition period (in seconds)")
            validator: IntValidator {
                bottom: 60
                locale: "C"
                top: 65535
            }

            onActiveFocusChanged: {
                if (!activeFocus && text === "") {
                    text = shownPeriod();
                }
            }
            onEditingFinished: {
                if (root.sensorModel) {
                    // The validator takes commas between thousands.
                    root.sensorModel.acquisitionPeriod = Number(text.replace(/,/g, ""));
                }
            }

            Binding on text {
                restoreMode: Binding.RestoreNone
                value: periodInput.shownPeriod()
            }
        }

        T.UnitLabel {
            text: qsTr("sec")
        }

        Item {
            Layout.fillWidth: true
        }
    }

    component HeaderLabel: Label {
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
    }
}
