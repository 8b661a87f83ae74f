// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material

import com.sarvane.qml
import "." as T

// A pane that keeps and shows the lines of the session log. Every frame that exists keeps its own, whether or not it
// is seen, and together they are all that is kept.
Frame {
    id: root

    property string beaconCommandPrefix: "+BC="
    property string rxCommandPrefix: "+RX="
    property bool filterRx: false

    // Whether Ctrl+F looks for a text here while no other pane of the window has the focus.
    property bool mFindDefault: true
    readonly property bool mInOwnWindow: !((Window.window as T.ApplicationWindow)?.mIsMainWindow ?? true)

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

    function beginFind(): void {
        const origin = lines.firstShownRow();
        findLoader.setSource("FindBar.qml", {
            "mStore": store
        });
        (findLoader.item as T.FindBar).begin(origin);
    }

    function endFind(): void {
        findLoader.source = "";
        lines.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    // A pane that has the focus takes Ctrl+F before the window's shortcut does.
    Keys.onPressed: event => {
        if (event.matches(StandardKey.Find)) {
            root.beginFind();
            event.accepted = true;
        }
    }
    Keys.onShortcutOverride: event => event.accepted = event.matches(StandardKey.Find)

    Shortcut {
        enabled: root.visible && (root.mFindDefault || root.mInOwnWindow)
        sequence: "Ctrl+F"

        onActivated: root.beginFind()
    }

    Loader {
        id: findLoader

        anchors.left: parent.left
        anchors.right: parent.right
        height: item?.implicitHeight ?? 0
    }

    Connections {
        function onClosed() {
            root.endFind();
        }

        ignoreUnknownSignals: true
        target: findLoader.item
    }

    LogLines {
        id: lines

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: findLoader.bottom
        mFinder: (findLoader.item as T.FindBar)?.mFinder ?? null
        store: store
        Accessible.name: root.mName
    }

    // Built when the lines do not follow the newest one for the first time.
    Loader {
        id: jumpLoader

        property bool wasWanted: false

        active: wasWanted
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: 20 // beside the bar
        source: "JumpButton.qml"
        visible: !lines.held

        onVisibleChanged: wasWanted = wasWanted || visible
    }

    Connections {
        function onClicked() {
            lines.jumpToLatest();
        }

        ignoreUnknownSignals: true
        target: jumpLoader.item
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
