// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import "." as T

/// A coloured button; \c mText comes translated from its user.
Button {
    id: root

    property color mColor: Material.accentColor
    property string mText

    Accessible.name: mText
    Material.background: mColor
    font.bold: true

    contentItem: Label {
        color: "white"
        font: root.font
        horizontalAlignment: Text.AlignHCenter
        text: root.mText
        verticalAlignment: Text.AlignVCenter
    }

    T.FlatBackground {
        mBackground: root.background
    }
}
