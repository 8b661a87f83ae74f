// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import com.sarvane.qml

/// A modal dialog of a view. It is rejected when the session ends, because what is accepted later would be meant for
/// another device, and when its view moves to another window, where it would show without its dimming and its focus.
ModalDialog {
    id: root

    readonly property Window mWindow: parent?.Window.window ?? null

    function end(): void {
        if (visible) {
            reject();
        }
    }

    onMWindowChanged: end()

    Connections {
        function onDisconnected() {
            root.end();
        }

        target: ZepManager
    }
}
