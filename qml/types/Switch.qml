// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Controls.Material.impl
import "." as T

/// A switch whose handle is seen with every renderer.
Switch {
    id: root

    T.FlatBackground {
        mBackground: (root.indicator as SwitchIndicator).handle
    }

    // A white handle on a white pane is told by its outline where it has no shadow.
    Binding {
        property: "border.width"
        target: (root.indicator as SwitchIndicator).handle
        value: 1
        when: root.GraphicsInfo.api === GraphicsInfo.Software && root.Material.theme === Material.Light
    }

    Binding {
        property: "border.color"
        target: (root.indicator as SwitchIndicator).handle
        value: root.Material.hintTextColor
    }
}
