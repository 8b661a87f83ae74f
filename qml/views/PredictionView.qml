// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../types" as T

/// The next pass that the module computed, and what it computes it from.
ColumnLayout {
    id: root

    /// A message of the page shows, which the tooltip of the download would cover.
    property bool mMessageShown: false

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool enableInput: g_enableInput
    readonly property bool rangerModuleSelected: g_rangerModuleSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    // Untyped, for the tools know no type of its bytes.
    readonly property var mConfig: ZepManager.tx.prepassProfile.config

    function bulletinsUploadable(): bool {
        return ZepManager.tx.prepassProfile.satelliteAopModel.rowCount() !== 0 && enableInput;
    }

    T.PassTable {
        Layout.fillWidth: true
        Layout.minimumHeight: 65
        mModel: ZepManager.tx.prepassProfile.nextPassModel
    }

    ScrollView {
        Layout.fillHeight: true
        Layout.fillWidth: true

        RowLayout {
            spacing: 15

            GridLayout {
                id: inputGrid

                Layout.alignment: Qt.AlignTop
                columnSpacing: 10
                columns: 2
                rowSpacing: 0

                Heading {
                    id: positionHeading

                    text: qsTr("GNSS position")
                }

                RowLayout {
                    spacing: 0

                    T.GetButton {
                        Accessible.name: positionHeading.text + ": " + mToolTip

                        onClicked: ZepManager.getGnssPosition()
                    }

                    T.SetButton {
                        Accessible.name: positionHeading.text + ": " + mToolTip
                        enabled: latitudeField.acceptableInput && longitudeField.acceptableInput && root.enableInput
                        visible: !root.rangerModuleSelected

                        onClicked: ZepManager.setGnssPosition(Number(latitudeField.text), Number(longitudeField.text))
                    }
                }

                Label {
                    text: qsTr("Latitude")
                }

                RowLayout {
                    PositionField {
                        id: latitudeField

                        Accessible.name: qsTr("Latitude")
                        mToolTip: qsTr("Geodetic latitude of the beacon")
                        text: ZepManager.tx.prepassProfile.position.latitude.toFixed(2)
                    }

                    T.UnitLabel {
                        text: "°"
                    }
                }

                Label {
                    text: qsTr("Longitude")
                }

                RowLayout {
                    PositionField {
                        id: longitudeField

                        Accessible.name: qsTr("Longitude")
                        mToolTip: qsTr("Geodetic longitude of the beacon")
                        text: ZepManager.tx.prepassProfile.position.longitude.toFixed(2)
                    }

                    T.UnitLabel {
                        text: "°"
                    }
                }

                Heading {
                    id: bulletinHeading

                    Layout.topMargin: 15
                    text: qsTr("AOP data")
                }

                RowLayout {
                    Layout.topMargin: 15
                    spacing: 0

                    T.DownloadButton {
                        mToolTipHeldBack: root.mMessageShown
                    }

                    T.GetButton {
                        Accessible.name: bulletinHeading.text + ": " + mToolTip

                        onClicked: ZepManager.getAopData()
                    }

                    T.SetButton {
                        id: aopSetBtn

                        Accessible.name: bulletinHeading.text + ": " + mToolTip
                        enabled: root.bulletinsUploadable()

                        onClicked: ZepManager.setAopDataAndConstellationStatus()
                    }
                }
            }

            ToolSeparator {
                Layout.preferredHeight: Math.max(inputGrid.implicitHeight, configGrid.implicitHeight)
                Layout.topMargin: 8
            }

            GridLayout {
                id: configGrid

                Layout.alignment: Qt.AlignTop
                Layout.rightMargin: 15
                columns: 3
                rowSpacing: 0
                rows: root.zep2ModuleSelected ? 4 : 3

                Heading {
                    id: configHeading

                    text: qsTr("Pass prediction")
                }

                RowLayout {
                    Layout.columnSpan: 2
                    spacing: 0

                    T.GetButton {
                        Accessible.name: configHeading.text + ": " + mToolTip

                        onClicked: ZepManager.getPrepassConfig()
                    }

                    T.SetButton {
                        Accessible.name: configHeading.text + ": " + mToolTip
                        enabled: durationField.acceptableInput && elevationField.acceptableInput && passDurationField.acceptableInput && root.enableInput
                        visible: !root.rangerModuleSelected

                        onClicked: ZepManager.setPrepassConfig(Number(durationField.text), Number(elevationField.text), Number(passDurationField.text))
                    }
                }

                Label {
                    text: qsTr("Duration")
                    visible: root.zep2ModuleSelected
                }

                // 4368 hours are the most that the portal predicts.
                T.NumberField {
                    id: durationField

                    Accessible.name: qsTr("Duration")
                    enabled: root.enableInput
                    mFrom: 0
                    mTo: 182
                    mToolTip: qsTr("Duration for prediction calculation (in days)")
                    text: root.mConfig.predictionDuration
                    visible: root.zep2ModuleSelected
                }

                T.UnitLabel {
                    text: qsTr("days(s)")
                    visible: root.zep2ModuleSelected
                }

                Label {
                    text: qsTr("Min. elevation")
                }

                ConfigField {
                    id: elevationField

                    Accessible.name: qsTr("Min. elevation")
                    mDecimals: 2
                    mFrom: 0
                    mTo: 90
                    mToolTip: qsTr("Minimum elevation (in °)")
                    mValue: root.mConfig.minElevation

                    onChosen: number => ZepManager.tx.prepassProfile.setConfigMinElevation(number)
                }

                T.UnitLabel {
                    text: "°"
                }

                Label {
                    text: qsTr("Min. pass duration")
                }

                ConfigField {
                    id: passDurationField

                    Accessible.name: qsTr("Min. pass duration")
                    mFrom: 0
                    mTo: 60
                    mToolTip: qsTr("Minimum pass duration (in minutes)")
                    mValue: root.mConfig.minPassDuration

                    onChosen: number => ZepManager.tx.prepassProfile.setConfigMinPassDuration(number)
                }

                T.UnitLabel {
                    text: qsTr("minutes(s)")
                }
            }
        }
    }

    // The number of bulletins tells nobody that it changed.
    Connections {
        function onAopDataDownloadFinished() {
            aopSetBtn.enabled = Qt.binding(() => root.bulletinsUploadable());
        }

        target: ZepManager.tx.prepassProfile
    }

    Connections {
        function onSequenceRunningChanged() {
            aopSetBtn.enabled = !ZepManager.tx.sequenceRunning && ZepManager.tx.prepassProfile.satelliteAopModel.rowCount() !== 0;
        }

        target: ZepManager.tx
    }

    // A Ranger has no button that would send the field: it takes each acceptable number at once.
    component ConfigField: T.NumberField {
        id: configField

        required property real mValue

        signal chosen(number: real)

        enabled: root.enableInput

        // While the field is written in, a number taken from half a text must not overwrite the text.
        Binding on text {
            restoreMode: Binding.RestoreNone
            value: configField.mValue
            when: !(root.rangerModuleSelected && configField.activeFocus)
        }

        onEdited: number => {
            if (root.rangerModuleSelected) {
                configField.chosen(number);
            }
        }
    }

    component Heading: Label {
        font.bold: true
        font.pointSize: 10
    }

    // A longitude has the limits of a latitude.
    component PositionField: T.NumberField {
        enabled: root.zep2ModuleSelected && root.enableInput
        mDecimals: 6
        mFrom: -90
        mTo: 90
    }
}
