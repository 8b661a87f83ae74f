// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material

/// Frames what has the focus while the keyboard leads it, and scrolls it into sight. The ripple of a control does not
/// tell it with every renderer, nor where a dialog gave it back.
Rectangle {
    id: root

    // Untyped, like what is read of it: not every item has it.
    required property var mFocused

    property bool mByKeyboard: false
    // A field tells it by its line.
    readonly property Item mTarget: mByKeyboard && mFocused?.focusPolicy ? mFocused : null

    function bringIntoSight(item: Item): void {
        for (let outer = item.parent; outer; outer = outer.parent) {
            const view = outer as Flickable;
            if (view !== null) {
                const top = item.mapToItem(view.contentItem, 0, 0).y;
                view.contentY = Math.min(top, Math.max(view.contentY, top + item.height - view.height));
            }
        }
    }

    anchors.fill: parent
    border.color: Material.foreground
    border.width: 2
    color: "transparent"
    parent: mTarget
    radius: 3
    visible: mTarget !== null
    z: 1

    onMFocusedChanged: {
        const reason = mFocused?.focusReason;
        if (reason === Qt.TabFocusReason || reason === Qt.BacktabFocusReason) {
            mByKeyboard = true;
            bringIntoSight(mFocused);
        } else if (reason === Qt.MouseFocusReason) {
            mByKeyboard = false;
        }
    }
}
