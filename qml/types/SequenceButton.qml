// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import com.sarvane.qml
import "." as T

/// A button whose meaning changes while a request waits. Input that was made during the wait arrives after it, so the
/// second click on Start would be one on Stop: a press from that time is ignored.
T.Button {
    id: root

    // Of the press that has not become a click yet. A click by the Return key or a screen reader has none.
    property bool mPressed: false
    property bool mPressHeld: false

    signal activated

    onCanceled: mPressed = false
    onClicked: {
        const held = mPressed ? mPressHeld : ZepManager.isInputHeld();
        mPressed = false;
        if (!held) {
            root.activated();
        }
    }
    onPressed: {
        mPressed = true;
        mPressHeld = ZepManager.isInputHeld();
    }
}
