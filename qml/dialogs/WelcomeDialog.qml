// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import Settings
import Strings
import "../types" as T

/// Greets the first visitor from the bottom right corner of the page.
Dialog {
    id: root

    height: width
    modal: true
    padding: 0
    visible: Settings.firstVisit
    width: parent.width * 0.3
    x: parent.width - width
    y: parent.height - height

    onClosed: Settings.firstVisit = false

    T.TutoScroll {
        tutoText: Strings.tuto.welcome
    }

    T.FlatBackground {
        mBackground: root.background
    }
}
