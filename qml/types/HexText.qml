// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import "." as T

/// Hexadecimal digits in pairs, to be read and copied; \c mName is the label beside them.
RowLayout {
    id: root

    required property string mName
    required property string mValue

    spacing: 0

    T.TextEdit {
        id: digits

        Accessible.name: root.mName
        text: root.mValue.replace(/(..)/g, "$1 ")
    }

    T.CopyToolButton {
        inputTextEdit: digits
    }
}
