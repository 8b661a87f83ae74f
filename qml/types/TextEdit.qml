// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import Style

TextEdit {
    color: Material.foreground
    font.bold: true
    // Only controls inherit the font of their window.
    font.family: barlowLoader.name
    font.pointSize: 12
    opacity: 0.8
    readOnly: true
    selectByMouse: true
    selectionColor: Material.accentColor

    FontLoader {
        id: barlowLoader

        source: Style.font.barlow
    }
}
