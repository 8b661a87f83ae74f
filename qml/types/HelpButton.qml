// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import "." as T

/// A faint question mark; \c mToolTip is what it asks or says.
T.ToolButton {
    icon.height: 18
    icon.source: "qrc:/images/question.svg"
    icon.width: 18
    opacity: 0.5
}
