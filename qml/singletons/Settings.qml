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
    property int windowWidth: 1350

    Component.onCompleted: {
        if (mode !== ZepManager.BASIC && mode !== ZepManager.EXPERT) {
            mode = ZepManager.BASIC;
        }
        if (module < Module.ZEP1 || module > Module.RANGER) {
            module = Module.ZEP1;
        }
    }
}
