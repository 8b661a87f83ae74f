// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import "." as T

/// Copies the text of \c inputTextEdit without its white space.
T.ToolButton {
    id: root

    required property TextEdit inputTextEdit

    icon.source: "qrc:/images/copy.svg"
    mToolTip: qsTr("Copy")
    spacing: 0

    onClicked: {
        const shownText = inputTextEdit.text;
        // By edits and not by assignments, which would end the binding that feeds the text.
        inputTextEdit.clear();
        inputTextEdit.insert(0, shownText.replace(/\s/g, ""));
        inputTextEdit.selectAll();
        inputTextEdit.copy();
        inputTextEdit.deselect();
        inputTextEdit.clear();
        inputTextEdit.insert(0, shownText);
        flashToolTip(qsTr("Copied!"));
    }
}
