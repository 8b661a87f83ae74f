// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import "." as T

/// A field for a number from \c mFrom to \c mTo with at most \c mDecimals decimals. What lies outside stays to be seen,
/// and only \c edited tells a number.
T.InputTextField {
    id: root

    required property int mFrom
    required property int mTo

    property int mDecimals: 0

    signal edited(number: real)

    // Not an IntValidator, which refuses a key that gives the number more digits than its limits have. What is out of
    // range would then not be seen.
    validator: DoubleValidator {
        bottom: root.mFrom
        decimals: root.mDecimals
        locale: "C"
        notation: DoubleValidator.StandardNotation
        // A comma, which it takes between thousands to read 0,045 as 45, leaves no number that would do.
        top: root.text.includes(",") ? -Infinity : root.mTo
    }

    onTextEdited: {
        if (acceptableInput) {
            edited(Number(text));
        }
    }
}
