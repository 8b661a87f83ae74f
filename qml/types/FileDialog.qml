// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import Qt.labs.platform as Platform
import com.sarvane.qml

/// Asks for a file, starting in the documents folder, over the window that asks. It ends with the session: what is
/// accepted after the device has gone would be meant for another one.
FileDialog {
    id: root

    /// What the popups of the asking window live in.
    required property Item mOverlay

    /// The folder that the dialog starts in: the documents, or the home folder where there is none.
    property url mFolder: Platform.StandardPaths.locate(Platform.StandardPaths.DocumentsLocation, "", Platform.StandardPaths.LocateDirectory) || Platform.StandardPaths.writableLocation(Platform.StandardPaths.HomeLocation)

    parentWindow: mOverlay?.Window.window ?? null

    onParentWindowChanged: reject() // the view has moved on, and its old window is gone
    onVisibleChanged: {
        if (visible) {
            currentFolder = mFolder; // and not where the file of the time before was
        }
        flattening.start();
    }

    Connections {
        function onDisconnected() {
            root.reject();
        }

        target: ZepManager
    }

    // Where the system has no dialog of its own, Qt draws one, with a shadow that the software renderer cannot draw and
    // whose bearer it leaves out.
    Timer {
        id: flattening

        interval: 0

        onTriggered: {
            if (!root.visible || root.mOverlay.GraphicsInfo.api !== GraphicsInfo.Software) {
                return;
            }
            for (let popup = 0; popup < root.mOverlay.children.length; ++popup) {
                const parts = root.mOverlay.children[popup].children;
                for (let part = 0; part < parts.length; ++part) {
                    parts[part].layer.enabled = false;
                }
            }
        }
    }
}
