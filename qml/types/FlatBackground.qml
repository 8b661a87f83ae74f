// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// The software renderer leaves out whatever bears a shadow effect. There this takes the shadow off \c mBackground,
/// which is then at least seen; any other renderer keeps it.
Binding {
    required property Item mBackground

    property: "enabled"
    target: mBackground.layer
    value: false
    when: mBackground.GraphicsInfo.api === GraphicsInfo.Software
}
