// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma Singleton

import QtQuick

/// Colours, fonts and distances (in pixels) that the whole interface shares.
QtObject {
    id: root

    readonly property Colors color: Colors {}
    readonly property Fonts font: Fonts {}
    readonly property Sizes size: Sizes {}

    component Colors: QtObject {
        readonly property color sarvaneDark: "#002028"
        readonly property color sarvaneLight: "#F9F9F9"
        readonly property color sarvanePink: "#E93B77"
        readonly property color sarvaneYellow: "#FEE02F"
        readonly property color lightBlue: "#2196F3"
        readonly property color lightGreen: "#009688"
        readonly property color lightGrey: "#607D8B"
        readonly property color lightOrange: "#FFC107"
        readonly property color lightRed: "#F44336"
        readonly property color transparentDark: "#365158"
        readonly property color transparentPink: "#22E93B77"
        readonly property color transparentYellow: "#22FEE02F"
    }

    component Fonts: QtObject {
        readonly property string barlow: "qrc:/fonts/Barlow-Regular.ttf"
        readonly property string robotoMono: "qrc:/fonts/RobotoMono-VariableFont.ttf"
    }

    component Sizes: QtObject {
        readonly property int boardMargin: 35
        readonly property int panelMargin: 30
        readonly property int panelPadding: 25
    }
}
