// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Controls.Material.impl
import Shortcuts

/// A small icon button; \c mToolTip comes translated from its user and is also its name for a screen reader. It shows
/// for the mouse, and for the Tab key.
ToolButton {
    id: root

    property string mToolTip
    /// The key that clicks the button while the user could, for the tooltip and a ButtonShortcut.
    property string mKey

    // What the ripple tells, and how much of the button it covers.
    property bool mRippleActive: down || visualFocus || hovered
    property bool mRippleHalf: contentItem.width <= contentItem.height

    /// Shows \a text at once for a second, whether or not the mouse is here: the answer to a click.
    function flashToolTip(text: string): void {
        ToolTip.delay = 0;
        ToolTip.show(text, 1000);
        ToolTip.delay = 500;
    }

    Accessible.name: text !== "" ? text : mToolTip
    ToolTip.delay: 500
    ToolTip.text: Shortcuts.hint(mToolTip, mKey)
    ToolTip.timeout: 3000
    ToolTip.visible: (hovered || visualFocus) && mToolTip !== ""
    bottomInset: 2
    icon.height: 16
    icon.width: 16
    implicitHeight: 32
    padding: 0
    topInset: 2

    // The control stretches its background between its insets, so the ripple stands in it and not for it.
    background: Item {
        implicitHeight: Material.touchTarget
        implicitWidth: Material.touchTarget

        Ripple {
            anchor: root
            clip: !root.mRippleHalf
            color: Material.rippleColor
            height: root.mRippleHalf ? parent.height / 2 : parent.height
            pressed: root.pressed
            width: root.mRippleHalf ? height : parent.width
            x: (parent.width - width) / 2
            y: (parent.height - height) / 2
        }

        // Still, where an active ripple would grow: a ripple of Qt 6.4 that was active before does not always come
        // again, with the software renderer never.
        Rectangle {
            anchors.centerIn: parent
            color: Material.rippleColor
            height: root.mRippleHalf ? width : parent.height
            radius: root.mRippleHalf ? width / 2 : 0
            visible: root.enabled && root.mRippleActive
            width: root.mRippleHalf ? parent.height * Math.SQRT1_2 : parent.width
        }
    }
}
