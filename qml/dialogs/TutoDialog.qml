// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls
import "../types" as T

/// A long help text over the view that asks for it, as wide as that view.
ViewDialog {
    property alias tutoText: tuto.tutoText

    header: null
    height: Math.min(implicitHeight, Overlay.overlay ? Overlay.overlay.height - 2 * margins : implicitHeight)
    margins: 20
    padding: 0

    T.TutoScroll {
        id: tuto
    }
}
