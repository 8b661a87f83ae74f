// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material

/// An entry of a tumbler, fading towards the ends of what is seen.
Label {
    required property int index // the tumbler places an entry by it
    required property string modelData

    color: Tumbler.tumbler.Material.foreground
    font: Tumbler.tumbler.font
    horizontalAlignment: Text.AlignHCenter
    opacity: 1 - Math.abs(Tumbler.displacement) / (Tumbler.tumbler.visibleItemCount / 2)
    text: modelData
    verticalAlignment: Text.AlignVCenter
}
