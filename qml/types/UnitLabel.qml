// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick.Controls.Material

/// The unit behind a field, or a hint below it.
Label {
    font.italic: true
    font.pointSize: 10
}
