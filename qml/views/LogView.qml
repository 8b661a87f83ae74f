// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

import Shortcuts
import com.sarvane.qml

import "../types" as T

// The session log with its actions.
T.ExpandableView {
    id: root

    layoutId: 1
    viewTitle: qsTr("Misc / Logs")

    mHeader: [
        T.ToolButton {
            id: selectButton

            icon.source: "qrc:/images/select.svg"
            mToolTip: qsTr("Select and copy all logs")

            onClicked: {
                logFrame.selectAllAndCopy();
                selectButton.flashToolTip(qsTr("Copied!"));
            }
        },
        T.ToolButton {
            icon.source: "qrc:/images/delete.svg"
            mToolTip: qsTr("Clear all logs")

            onClicked: ZepManager.logger.clearLogs()
        },
        T.ToolButton {
            id: exportButton

            icon.source: "qrc:/images/export.svg"
            mKey: Shortcuts.exportLog
            mToolTip: qsTr("Export logs/AT commands")

            onClicked: exportDialog.open()
        },
        T.CheckableButton {
            id: atCmdFilter

            icon.source: "qrc:/images/filter_at_cmd.svg"
            mToolTip: qsTr("Filter AT commands when exporting")
        }
    ]

    T.LogFrame {
        id: logFrame

        Layout.fillHeight: true
        Layout.fillWidth: true
        mName: qsTr("Log lines")
    }

    T.ButtonShortcut {
        mButton: exportButton
        sequence: Shortcuts.exportLog
    }

    T.SaveDialog {
        id: exportDialog

        mOverlay: root.Overlay.overlay
        title: qsTr("Export logs to file...")

        onAccepted: ZepManager.logger.exportLogsToFile(exportDialog.currentFile, logFrame.getLogs(), atCmdFilter.checked)
    }
}
