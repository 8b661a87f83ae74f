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

    // A pane without a view is not shown. While the first column has none, the other two stand side by side and its
    // footer below them.
    readonly property bool mFirstColumnFilled: profileSelectionPane.implicitContentHeight > 0 || prepassPane.implicitContentHeight > 0
    readonly property bool mLogColumnShown: !logView.mExpanded || (zep2ModuleSelected && !rxView.mExpanded)
    readonly property bool mTxColumnShown: rangerModuleSelected ? sensorPane.implicitContentHeight > 0 : !txView.mExpanded
    readonly property bool mTxBelowLog: mFirstColumnFilled && !largeDisplay

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
        Layout.columnSpan: !root.mFirstColumnFilled && root.mLogColumnShown && root.mTxColumnShown ? 2 : 1
        Layout.fillHeight: root.mFirstColumnFilled
        Layout.fillWidth: true
        Layout.maximumWidth: root.mFirstColumnFilled ? Math.max(root.width * 0.45, profileSelectionPane.implicitWidth) : root.width
        Layout.minimumWidth: Math.max(profileSelectionPane.implicitWidth, prepassPane.implicitWidth)
        Layout.preferredWidth: root.width * (root.largeDisplay ? 0.3 : 0.45)
        Layout.row: root.mFirstColumnFilled ? 0 : 1
        Layout.rowSpan: root.mFirstColumnFilled ? root.rows : 1
        spacing: 0

        Pane {
            id: profileSelectionPane

            Layout.fillWidth: true
            bottomPadding: 0
            visible: implicitContentHeight > 0
        }

        T.Pane {
            id: prepassPane

            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.topMargin: Style.size.panelMargin
            bottomPadding: Style.size.panelPadding
            visible: implicitContentHeight > 0
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

            RowLayout {
                id: configurationGroup

                spacing: 10
                visible: root.rangerModuleSelected
            }
        }
    }

    ColumnLayout {
        id: logColumn

        Layout.column: root.mFirstColumnFilled ? 1 : 0
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

        Layout.column: root.mFirstColumnFilled && root.largeDisplay ? 2 : root.mFirstColumnFilled || root.mLogColumnShown ? 1 : 0
        Layout.fillHeight: true
        Layout.fillWidth: true
        Layout.maximumWidth: root.mTxColumnShown ? root.width : 0
        Layout.preferredHeight: root.height
        Layout.preferredWidth: root.width * (root.largeDisplay ? 0.35 : 0.55)
        Layout.row: root.mTxBelowLog ? 1 : 0
        spacing: Style.size.panelMargin

        T.Pane {
            id: txPane

            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.topMargin: root.mTxBelowLog ? Style.size.panelPadding : 0
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
            Layout.topMargin: root.mTxBelowLog ? Style.size.panelPadding : 0
            visible: root.rangerModuleSelected && implicitContentHeight > 0
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
                aopToolTip0.bgColor = error ? Style.color.lightRed : Style.color.lightGreen;
                aopToolTip0.show(error ? qsTr("ERROR: %1").arg(msg) : msg, 1500);
            }
        }

        target: ZepManager
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
