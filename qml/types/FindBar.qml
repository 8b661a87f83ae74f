// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import Style
import com.sarvane.qml
import "." as T

/// Looks for a text in the lines of a log, and moves from hit to hit.
RowLayout {
    id: root

    required property LogModel mStore

    readonly property alias mFinder: finder

    signal closed

    /// Begins with what was looked for last, to be typed over.
    function begin(origin: int): void {
        finder.setOrigin(origin);
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
    }

    function countText(): string {
        if (finder.pattern === "") {
            return "";
        }
        const count = finder.searching ? qsTr("%1…").arg(finder.count) : String(finder.count);
        return finder.currentNumber > 0 ? qsTr("%1 of %2").arg(finder.currentNumber).arg(count) : qsTr("%1 found").arg(count);
    }

    spacing: 0

    Keys.onPressed: event => {
        if (event.key === Qt.Key_Escape) {
            root.closed();
        } else if (event.key === Qt.Key_F3) {
            event.modifiers & Qt.ShiftModifier ? finder.previous() : finder.next();
        } else {
            return;
        }
        event.accepted = true;
    }

    LogFinder {
        id: finder

        caseSensitive: caseButton.checked
        model: root.mStore
        pattern: field.text
    }

    TextField {
        id: field

        Accessible.name: qsTr("Find in the log")
        Layout.fillWidth: true
        Layout.maximumWidth: 300
        bottomPadding: 8
        color: finder.pattern !== "" && finder.count === 0 && !finder.searching ? Style.color.lightRed : Material.foreground
        placeholderText: qsTr("Find")
        selectByMouse: true

        Keys.onEnterPressed: event => event.modifiers & Qt.ShiftModifier ? finder.previous() : finder.next()
        Keys.onReturnPressed: event => event.modifiers & Qt.ShiftModifier ? finder.previous() : finder.next()
    }

    T.CheckableButton {
        id: caseButton

        font.capitalization: Font.MixedCase
        mToolTip: qsTr("Match case")
        text: "Aa"

        Accessible.name: mToolTip
    }

    T.ToolButton {
        enabled: finder.count > 0
        mKey: "Shift+F3"
        mToolTip: qsTr("Previous hit")
        text: "▲"

        Accessible.name: mToolTip
        onClicked: finder.previous()
    }

    T.ToolButton {
        enabled: finder.count > 0
        mKey: "F3"
        mToolTip: qsTr("Next hit")
        text: "▼"

        Accessible.name: mToolTip
        onClicked: finder.next()
    }

    Label {
        Accessible.name: text
        Layout.leftMargin: 8
        text: root.countText()
        textFormat: Text.PlainText
    }

    Item {
        Layout.fillWidth: true
    }

    T.ToolButton {
        mKey: "Esc"
        mToolTip: qsTr("Close the find bar")
        text: "✕"

        Accessible.name: mToolTip
        onClicked: root.closed()
    }
}
