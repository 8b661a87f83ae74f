// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import "." as T

/// Hexadecimal digits that are read in pairs and changed as \c mLength bare digits. The owner keeps \c mEditing, which
/// tells the two apart, and takes over what was \c confirmed.
RowLayout {
    id: root

    required property bool mEditing
    required property int mLength
    // The label beside it.
    required property string mName
    // Untyped: a string tells nobody that the device said what is known, and what was typed over would stay.
    required property var mValue

    signal confirmed(digits: string)
    signal editingChosen(on: bool)

    function restore(): void {
        field.text = mValue;
    }

    function restoreIfEmpty(): void {
        if (field.text === "") {
            restore();
        }
    }

    spacing: 0

    T.HexText {
        mName: root.mName
        mValue: root.mValue
        visible: !root.mEditing

        T.ToolButton {
            icon.source: "qrc:/images/pencil.svg"
            mToolTip: qsTr("Update %1").arg(root.mName)

            onClicked: {
                root.editingChosen(true);
                field.forceActiveFocus();
                field.selectAll();
            }
        }
    }

    T.InputTextField {
        id: field

        Accessible.name: root.mName
        implicitWidth: 290
        validator: RegularExpressionValidator {
            regularExpression: new RegExp("[0-9a-fA-F]{" + root.mLength + "}")
        }
        visible: root.mEditing

        // The field itself tells the end of an editing only for a text that its validator accepts.
        Keys.onEnterPressed: root.restoreIfEmpty()
        Keys.onReturnPressed: root.restoreIfEmpty()
        onActiveFocusChanged: {
            if (!activeFocus) {
                root.restoreIfEmpty();
            }
        }

        Binding on text {
            restoreMode: Binding.RestoreNone
            value: root.mValue
        }
    }

    T.SetButton {
        id: setButton

        ToolTip.visible: false
        mAcceptable: field.acceptableInput
        visible: root.mEditing

        onClicked: {
            root.confirmed(field.text);
            root.editingChosen(false);
        }
    }

    T.ToolButton {
        icon.source: "qrc:/images/return.svg"
        mToolTip: qsTr("Cancel")
        visible: root.mEditing

        onClicked: {
            root.restore();
            root.editingChosen(false);
        }
    }
}
