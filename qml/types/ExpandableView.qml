// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts

import Style

import "." as T

// A titled view of the dashboard that can move, as it is, from its pane to a window of its own and back. The pane is
// to be seen while mExpanded is false.
ColumnLayout {
    id: root

    // The number of the column of the dashboard that the view is part of.
    required property int layoutId
    required property T.Pane mParentPane
    required property string viewTitle

    readonly property alias mExpanded: state.expanded
    // What stands at the right end of the title row.
    property alias mHeader: headerTools.data

    signal windowClosed(int layoutId)
    signal windowOpened(int layoutId)

    anchors.fill: parent
    clip: true

    QtObject {
        id: state

        property bool expanded: false
    }

    RowLayout {
        Layout.alignment: Qt.AlignTop
        spacing: 0

        T.Label {
            text: root.viewTitle
        }

        T.ToolButton {
            enabled: !expandedWindow.visible
            icon.source: "qrc:/images/expand.svg"
            mToolTip: qsTr("Expand window")
            opacity: expandedWindow.visible ? 0 : 0.5

            onClicked: {
                windowPane.mView = root;
                expandedWindow.show();
                state.expanded = true;
                root.windowOpened(root.layoutId);
            }
        }

        Item {
            Layout.fillWidth: true
        }

        RowLayout {
            id: headerTools

            spacing: 0
        }
    }

    T.ApplicationWindow {
        id: expandedWindow

        height: 900
        title: root.viewTitle
        width: 700

        onClosing: {
            root.mParentPane.mView = root;
            state.expanded = false;
            root.windowClosed(root.layoutId);
        }

        T.Pane {
            id: windowPane

            anchors.fill: parent
            anchors.margins: Style.size.panelMargin
            bottomPadding: Style.size.panelPadding
        }
    }
}
