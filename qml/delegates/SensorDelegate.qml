// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.Material
import QtQuick.Layouts
import Sensor
import TxManager
import com.sarvane.qml
import "../dialogs"
import "../types" as T

/// A sensor with its two switches and its thresholds, in the columns that the view names.
ItemDelegate {
    id: root

    required property real checkboxWidth
    // Untyped and read role by role: unlike required properties it tells of a role that was written with the value
    // that it had, which brings a control back from what the user made of it.
    required property var model
    required property real thresholdLabelWidth

    readonly property bool prepassOnModuleProfileSelected: g_prepassOnModuleProfileSelected // qmllint disable unqualified

    Accessible.name: model.name
    Accessible.role: Accessible.ListItem
    checkable: false
    focusPolicy: Qt.NoFocus
    padding: 0
    verticalPadding: 0
    width: ListView.view.width

    background: null
    contentItem: content

    FocusScope {
        id: content

        implicitHeight: row.implicitHeight
        implicitWidth: row.implicitWidth

        // The Tab key leads to rows that are out of sight as well.
        onActiveFocusChanged: {
            if (activeFocus) {
                root.ListView.view.positionViewAtIndex(root.model.index, ListView.Contain);
            }
        }

        RowLayout {
            id: row

            anchors.fill: parent
            spacing: 0

            Label {
                Layout.fillWidth: true
                Layout.leftMargin: 6
                elide: Text.ElideRight
                font.pointSize: 12
                text: root.model.name
                textFormat: Text.PlainText
            }

            CheckBox {
                Accessible.name: qsTr("%1 enable").arg(root.model.name)
                Layout.preferredWidth: root.checkboxWidth
                checked: root.model.enable
                enabled: root.model.id !== Id.PUSH_BUTTON
                verticalPadding: padding

                onClicked: {
                    if (root.model.id === Id.GNSS && !checked && root.prepassOnModuleProfileSelected) {
                        warningDialog.open();
                        return;
                    }
                    if (!checked) {
                        root.model.alert = false;
                    }
                    root.model.enable = checked;
                }
            }

            CheckBox {
                Accessible.name: qsTr("%1 alert").arg(root.model.name)
                Layout.preferredWidth: root.checkboxWidth
                checked: root.model.alert
                enabled: root.model.enable && root.model.hasAlertCmd
                verticalPadding: padding

                onClicked: root.model.alert = checked
            }

            RowLayout {
                Layout.fillWidth: false
                Layout.preferredWidth: root.thresholdLabelWidth
                spacing: 0

                Label {
                    Layout.fillWidth: true
                    Layout.minimumWidth: Math.min(Math.ceil(implicitWidth), root.thresholdLabelWidth - thresholdInput.Layout.minimumWidth)
                    elide: Text.ElideRight
                    font.pointSize: 10
                    horizontalAlignment: Text.AlignRight
                    rightPadding: 10
                    text: root.model.thresholdTitle
                    textFormat: Text.PlainText
                }

                T.InputTextField {
                    id: thresholdInput

                    Accessible.name: qsTr("%1 threshold").arg(root.model.name)
                    // In a narrow window it makes room for its label.
                    Layout.fillWidth: true
                    Layout.maximumWidth: implicitWidth
                    Layout.minimumWidth: 75
                    ToolTip.visible: press.active && mToolTip !== ""
                    bottomPadding: 7
                    enabled: root.model.thresholdValues !== "NA"
                    implicitWidth: 120
                    mToolTip: root.model.thresholdTitle
                    topPadding: 7
                    validator: RegularExpressionValidator {
                        regularExpression: /[0-9,]+/
                    }

                    // An emptied field is no threshold, and says nothing of the one that stays.
                    onActiveFocusChanged: {
                        if (!activeFocus && text === "") {
                            text = root.model.thresholdValues;
                        }
                    }
                    onEditingFinished: root.model.thresholdValues = text

                    Binding on text {
                        restoreMode: Binding.RestoreNone
                        value: root.model.thresholdValues
                    }

                    PointHandler {
                        id: press
                    }
                }
            }
        }
    }

    ViewDialog {
        id: warningDialog

        anchors.centerIn: Overlay.overlay
        closePolicy: Popup.NoAutoClose
        standardButtons: Dialog.Ok
        title: qsTr("WARNING! GNSS sensor is mandatory in Pre-pass mode\nfor accurate prediction pass calculation")

        onAccepted: root.model.enable = true
    }

    Connections {
        // A device that predicts passes has to know where it is.
        function onSelectedProfileChanged() {
            if (ZepManager.tx.selectedProfile !== Profile.PERIODIC && root.model.id === Id.GNSS) {
                root.model.enable = true;
            }
        }

        target: ZepManager.tx
    }
}
