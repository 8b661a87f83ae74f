// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma Singleton

import Qt.labs.settings as Labs
import QtQuick
import ZepBoard
import com.sarvane.qml

/// What the interface remembers between two runs; each property is written to the store when it changes.
Labs.Settings {
    property bool darkTheme: true
    property bool firstVisit: true
    property int mode: ZepManager.BASIC
    property int module: Module.ZEP1
    property int windowHeight: 850
    property bool windowMaximized: false
    property int windowWidth: 1350
    // Of a window that was never placed, -1.
    property int windowX: -1
    property int windowY: -1

    // For a key that is missing the toolkit stores all values, of which those that it has not read yet are defaults. A
    // change of one value stores all of them again, as they are by now.
    function keepWhatWasRead(): void {
        for (const key of ["darkTheme", "firstVisit", "mode", "module", "windowHeight", "windowMaximized", "windowWidth", "windowX", "windowY"]) {
            if (value(key) === undefined) {
                darkThemeChanged();
                return;
            }
        }
    }

    Component.onCompleted: {
        keepWhatWasRead();
        if (mode !== ZepManager.BASIC && mode !== ZepManager.EXPERT) {
            mode = ZepManager.BASIC;
        }
        if (module < Module.ZEP1 || module > Module.RANGER) {
            module = Module.ZEP1;
        }
    }
}
