// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts

import "../types" as T

// What the satellites sent, picked out of the session log.
T.ExpandableView {
    id: root

    layoutId: 1
    viewTitle: qsTr("RX commands")

    mHeader: [
        T.ToolButton {
            id: selectButton

            icon.source: "qrc:/images/select.svg"
            mToolTip: qsTr("Select and copy all logs")

            onClicked: {
                rxFrame.selectAllAndCopy();
                selectButton.flashToolTip(qsTr("Copied!"));
            }
        },
        T.ToolButton {
            icon.source: "qrc:/images/delete.svg"
            mToolTip: qsTr("Clear all logs")

            onClicked: rxFrame.clear()
        }
    ]

    T.LogFrame {
        id: rxFrame

        Layout.fillHeight: true
        Layout.fillWidth: true
        filterRx: true
        mFindDefault: false
        mName: qsTr("RX lines")
    }
}
