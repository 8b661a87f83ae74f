// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as Templates

/// A key that clicks \c mButton while the user could do so.
Shortcut {
    required property Templates.AbstractButton mButton

    autoRepeat: false
    enabled: mButton.visible && mButton.enabled

    onActivated: mButton.clicked()
}
