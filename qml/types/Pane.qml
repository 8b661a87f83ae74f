// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import Settings
import Style
import "." as T

/// A raised panel. Assigning an item to \c mView moves the item here, out of whatever pane held it.
Pane {
    id: root

    property list<Item> mView

    Material.background: Settings.darkTheme ? Style.color.transparentDark : "white"
    Material.elevation: 3
    horizontalPadding: Style.size.panelPadding

    onMViewChanged: {
        for (let row = 0; row < mView.length; ++row) {
            mView[row].parent = contentItem;
        }
    }

    T.FlatBackground {
        mBackground: root.background
    }
}
