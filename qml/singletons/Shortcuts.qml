// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma Singleton

import QtQuick

/// The keys for what is done often. A text field has no use for any of them.
QtObject {
    readonly property string addPayload: "Ctrl+N"
    readonly property string connect: "F2"
    readonly property string disconnect: "Shift+F2"
    readonly property string exportLog: "Ctrl+S"
    readonly property string importPasses: "Ctrl+O"
    readonly property string settings: "Ctrl+,"
    readonly property string start: "F5"
    readonly property string stop: "Shift+F5"
    readonly property string theme: "Ctrl+T"

    readonly property var help: ["F1", "Ctrl+?"]

    /// What the help sheet lists, in its order.
    readonly property var all: [
        {
            "key": connect,
            "what": qsTr("Connect")
        },
        {
            "key": disconnect,
            "what": qsTr("Disconnect")
        },
        {
            "key": start,
            "what": qsTr("Start Tx sequence")
        },
        {
            "key": stop,
            "what": qsTr("Stop or reset the Tx sequence")
        },
        {
            "key": addPayload,
            "what": qsTr("Add a payload message")
        },
        {
            "key": importPasses,
            "what": qsTr("Import satellite passes")
        },
        {
            "key": exportLog,
            "what": qsTr("Export logs/AT commands")
        },
        {
            "key": settings,
            "what": qsTr("Settings, and return from them")
        },
        {
            "key": theme,
            "what": qsTr("Dark or light theme")
        },
        {
            "key": "Ctrl+F",
            "what": qsTr("Find in the log; F3 and Shift+F3 for the next and the previous hit")
        },
        {
            "key": qsTr("Up, Down, Tab"),
            "what": qsTr("In a custom AT command: earlier commands, completion")
        },
        {
            "key": help.join(", "),
            "what": qsTr("This list")
        }
    ]

    /// A tooltip with the key that does the same.
    function hint(toolTip: string, key: string): string {
        return key === "" ? toolTip : toolTip + " (" + key + ")";
    }
}
