// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import Style

/// A small field that turns red while its validator does not accept what it holds. The Tab key selects what it holds.
TextField {
    id: root

    property string mToolTip

    Material.accent: acceptableInput ? Style.color.sarvanePink : Style.color.lightRed
    ToolTip.delay: 500
    ToolTip.text: mToolTip
    ToolTip.timeout: 3000
    ToolTip.visible: hovered && mToolTip !== ""
    bottomPadding: 8
    color: !enabled ? Material.hintTextColor : acceptableInput ? Material.foreground : Style.color.lightRed
    horizontalAlignment: TextInput.AlignHCenter
    implicitWidth: 60
    selectByMouse: true

    onActiveFocusChanged: {
        if (activeFocus && (focusReason === Qt.TabFocusReason || focusReason === Qt.BacktabFocusReason)) {
            selectAll();
        }
    }
}
