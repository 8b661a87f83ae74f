// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import com.sarvane.qml
import "." as T

/// A field for a command. Up and Down go through the commands sent before, those that begin with what was typed; Tab
/// completes the word of one of \c mWords, and moves on where there is nothing to complete.
T.InputTextField {
    id: root

    property var mWords: []

    /// Adds the command to those that Up and Down go through.
    function remember(): void {
        history.add(text);
    }

    Keys.onDownPressed: text = history.newer(text)
    Keys.onTabPressed: event => {
        const completed = text === "" || cursorPosition !== length ? text : history.complete(text, mWords);
        event.accepted = completed.length > text.length;
        if (event.accepted) {
            text = completed;
        }
    }
    Keys.onUpPressed: text = history.older(text)

    CommandHistory {
        id: history
    }
}
