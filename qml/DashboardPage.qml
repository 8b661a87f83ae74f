// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import Style
import com.sarvane.qml
import "types" as T
import "views"

/// The panes that show and drive the connected board.
GridLayout {
    id: root

    property bool largeDisplay: width > 1600

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool rangerModuleSelected: g_rangerModuleSelected
    readonly property bool zep1ModuleSelected: g_zep1ModuleSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    readonly property bool mTxColumnShown: rangerModuleSelected ? !sensorView.mExpanded : !txView.mExpanded

    signal windowClosed(int layoutId)
    signal windowOpened(int layoutId)

    function columnOf(layoutId: int): Item {
        return layoutId === 1 ? logColumn : txColumn;
    }

    /// Hides \a layout once none of its children is visible any more.
    function hideLayout(layout: Item): void {
        if (layout.visibleChildren.length === 0) {
            layout.visible = false;
        }
    }

    function showLayout(layout: Item): void {
        layout.visible = true;
    }

    columnSpacing: visibleChildren.length === 1 ? 0 : Style.size.panelMargin
    columns: largeDisplay ? 3 : 2
    height: parent?.height ?? 0
    rows: largeDisplay ? 1 : 2
    width: parent?.width ?? 0

    onWindowClosed: layoutId => showLayout(columnOf(layoutId))
    onWindowOpened: layoutId => hideLayout(columnOf(layoutId))

    ColumnLayout {
        id: profileColumn

        Layout.alignment: Qt.AlignTop
        Layout.column: 0
        Layout.fillHeight: true
        Layout.fillWidth: true
        Layout.maximumWidth: Math.max(root.width * 0.45, Layout.minimumWidth)
        Layout.minimumWidth: Math.max(profileSelectionPane.implicitWidth, prepassPane.implicitWidth)
        Layout.preferredWidth: root.width * (root.largeDisplay ? 0.3 : 0.45)
        Layout.row: 0
        Layout.rowSpan: root.rows
        spacing: 0

        UtcView {}

        Pane {
            id: profileSelectionPane

            Layout.fillWidth: true
            bottomPadding: 0

            ProfileSelectionView {
                anchors.fill: parent
            }
        }

        T.Pane {
            id: prepassPane

            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.topMargin: Style.size.panelMargin
            bottomPadding: Style.size.panelPadding

            PrepassView {
                mMessageShown: aopToolTip0.visible || aopToolTip1.visible
            }
        }

        RowLayout {
            id: footer

            Layout.alignment: Qt.AlignBottom
            Layout.topMargin: 16

            RowLayout {
                spacing: 6
                visible: root.zep1ModuleSelected || root.zep2ModuleSelected

                LegendMark {
                    color: Material.primary
                }

                LegendLabel {
                    text: qsTr("active state")
                }

                LegendLabel {
                    Layout.leftMargin: 4
                    Layout.rightMargin: 4
                    text: "/"
                }

                LegendMark {
                    color: Material.accent
                }

                LegendLabel {
                    text: qsTr("pending state")
                }
            }

            Item {
                Layout.fillWidth: true
            }

            ConfigurationControls {
                id: configurationGroup

                visible: root.rangerModuleSelected

                onImportRefused: message => aopToolTip0.tell(message, true, 3000)
            }
        }
    }

    ColumnLayout {
        id: logColumn

        Layout.column: 1
        Layout.fillHeight: true
        Layout.fillWidth: true
        Layout.preferredHeight: root.height
        Layout.preferredWidth: root.width * (root.largeDisplay ? 0.35 : 0.55)
        Layout.row: 0
        spacing: Style.size.panelMargin

        T.Pane {
            id: logPane

            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.preferredHeight: 0.6
            bottomPadding: Style.size.panelPadding
            visible: !logView.mExpanded

            LogView {
                id: logView

                mParentPane: logPane

                onWindowClosed: layoutId => root.windowClosed(layoutId)
                onWindowOpened: layoutId => root.windowOpened(layoutId)
            }
        }

        T.Pane {
            id: rxPane

            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.preferredHeight: 0.4
            bottomPadding: Style.size.panelPadding
            visible: root.zep2ModuleSelected && !rxView.mExpanded

            RxView {
                id: rxView

                mParentPane: rxPane

                onWindowClosed: layoutId => root.windowClosed(layoutId)
                onWindowOpened: layoutId => root.windowOpened(layoutId)
            }
        }
    }

    ColumnLayout {
        id: txColumn

        Layout.column: root.largeDisplay ? 2 : 1
        Layout.fillHeight: true
        Layout.fillWidth: true
        // A pane whose view is in its own window is not shown, and takes no room.
        Layout.maximumHeight: root.mTxColumnShown ? root.height : 0
        Layout.maximumWidth: root.mTxColumnShown ? root.width : 0
        Layout.preferredHeight: root.height
        Layout.preferredWidth: root.width * (root.largeDisplay ? 0.35 : 0.55)
        Layout.row: root.largeDisplay ? 0 : 1
        spacing: Style.size.panelMargin

        T.Pane {
            id: txPane

            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.topMargin: root.largeDisplay ? 0 : Style.size.panelPadding
            visible: !root.rangerModuleSelected && !txView.mExpanded

            TxView {
                id: txView

                mParentPane: txPane

                onWindowClosed: layoutId => root.windowClosed(layoutId)
                onWindowOpened: layoutId => root.windowOpened(layoutId)
            }
        }

        T.Pane {
            id: sensorPane

            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.topMargin: root.largeDisplay ? 0 : Style.size.panelPadding
            // A column of the view is a share of the view's width, which must not follow from it in turn.
            implicitWidth: 0
            visible: root.rangerModuleSelected && !sensorView.mExpanded

            SensorView {
                id: sensorView

                mParentPane: sensorPane

                onWindowClosed: layoutId => root.windowClosed(layoutId)
                onWindowOpened: layoutId => root.windowOpened(layoutId)
            }
        }
    }

    T.MessageBubble {
        id: aopToolTip0

        parent: footer
    }

    T.MessageBubble {
        id: aopToolTip1

        delay: 500
        parent: footer
        y: aopToolTip0.y - height - 10
    }

    Connections {
        function onProcessingDataChanged(msg: string, error: bool) {
            if (msg !== "") {
                aopToolTip0.tell(msg, error, 1500);
            }
        }

        target: ZepManager
    }

    Connections {
        function onAopDataDownloadFinished(error: string) {
            if (error !== "") {
                aopToolTip0.tell(error, true, 3000);
            } else {
                aopToolTip0.tell(qsTr("AOP data downloaded successfully!"), false, 2000);
                aopToolTip1.tell(qsTr("Check satellite pane for more info."), false, 2500);
            }
        }

        target: ZepManager.tx.prepassProfile
    }

    component LegendLabel: Label {
        font.pointSize: 10
    }

    component LegendMark: Rectangle {
        Layout.preferredHeight: 10
        Layout.preferredWidth: 10
        radius: 5
    }
}
