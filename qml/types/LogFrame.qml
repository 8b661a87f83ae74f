// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material

import com.sarvane.qml

// A pane that keeps and shows the lines of the session log. Every frame that exists keeps its own, whether or not it
// is seen, and together they are all that is kept.
Frame {
    id: root

    property string beaconCommandPrefix: "+BC="
    property string rxCommandPrefix: "+RX="
    property bool filterRx: false

    // What a screen reader calls the lines.
    required property string mName

    function clear(): void {
        lines.clear();
    }

    function getLogs(): string {
        return store.text();
    }

    function selectAllAndCopy(): void {
        lines.selectAll();
        store.copyAll();
    }

    // Keeps the time stamp and the data of a line in which the device passes on what a satellite sent. The source tag
    // is fixed: what other devices say with the same words is passed over.
    function appendReceived(log: string, prefix: string): void {
        const parts = log.split("[ZEP] " + prefix);
        if (parts.length === 2) {
            store.append(parts[0] + parts[1]);
        }
    }

    LogLines {
        id: lines

        anchors.fill: parent
        store: store
        Accessible.name: root.mName
    }

    LogModel {
        id: store
    }

    Connections {
        function onLogCreated(log: string) {
            if (!root.filterRx) {
                store.append(log);
            } else if (log.includes(root.beaconCommandPrefix)) {
                root.appendReceived(log, root.beaconCommandPrefix);
            } else if (log.includes(root.rxCommandPrefix)) {
                root.appendReceived(log, root.rxCommandPrefix);
            }
        }

        function onLogsCleared() {
            root.clear();
        }

        target: ZepManager.logger
    }

    Connections {
        function onDisconnected() {
            root.clear();
        }

        target: ZepManager
    }
}
