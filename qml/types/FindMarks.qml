// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import com.sarvane.qml

/// Marks every place of a line at which the finder finds its pattern, under the text.
Repeater {
    id: root

    required property LogFinder mFinder // or null
    required property bool mIsCurrent
    required property TextEdit mLine

    /// What the line shows, set when the line has laid it out.
    property string mText

    /// A rectangle for each visual line that a hit runs through. The line wraps anew with its width.
    function places(): var {
        const found = [];
        const length = mFinder.pattern.length;
        for (const column of mFinder.columnsIn(mText)) {
            if (column + length > mLine.length) {
                continue; // not laid out yet
            }
            let from = mLine.positionToRectangle(column);
            let end = from;
            for (let offset = 1; offset <= length; ++offset) {
                const here = mLine.positionToRectangle(column + offset);
                if (here.y !== from.y) {
                    found.push(Qt.rect(from.x, from.y, mLine.width - from.x, from.height));
                    from = here;
                }
                end = here;
            }
            if (end.x > from.x) {
                found.push(Qt.rect(from.x, from.y, end.x - from.x, from.height));
            }
        }
        return found;
    }

    // What is read here and not only in places() is what makes it change.
    model: mFinder !== null && mFinder.pattern !== "" && (mFinder.caseSensitive || true) && mText !== "" && mLine.width > 0 ? places() : []

    Rectangle {
        required property rect modelData

        color: Material.color(root.mIsCurrent ? Material.Orange : Material.Amber, Material.Shade500)
        height: modelData.height
        opacity: root.mIsCurrent ? 0.75 : 0.4
        width: modelData.width
        x: modelData.x
        y: modelData.y
        z: -1
    }
}
