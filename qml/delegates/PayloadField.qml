// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material

import com.sarvane.qml
import Payload

// The message of a payload, shown as pairs of digits and edited as bare digits. It is checked at each key, and goes to
// the list when the editing ends.
TextField {
    id: root

    // The row of the list, for reading it as it is now and for writing.
    required property var mModel
    required property int mStatus

    // The verdict on the text, red: first the list's own, then that of the last check.
    property bool malformed: mStatus === Status.ERROR

    function bare(message: string): string {
        return message.replace(/\s/g, "");
    }

    function inPairs(message: string): string {
        return message.replace(/(..)/g, "$1 ");
    }

    bottomPadding: 0
    color: malformed ? "red" : Material.foreground
    font.pointSize: 12
    selectByMouse: true
    text: inPairs(mModel.message)
    topPadding: 0
    // 62 digits are the 248 bits of the longest message.
    validator: RegularExpressionValidator {
        regularExpression: /[0-9a-fA-F\s]{0,62}/
    }

    onActiveFocusChanged: {
        if (activeFocus && (focusReason === Qt.TabFocusReason || focusReason === Qt.BacktabFocusReason)) {
            root.text = root.bare(root.text);
            root.selectAll();
        }
    }
    onEditingFinished: {
        const message = root.bare(root.text);
        if (message !== "") {
            root.mModel.message = message;
        }
        root.text = root.inPairs(root.mModel.message);
        root.malformed = !ZepManager.tx.payloadListModel.checkPayload(root.mModel.index);
    }
    onPressed: root.text = root.bare(root.text)
    onTextEdited: {
        if (!root.acceptableInput) {
            root.text = root.mModel.message;
        }
        root.malformed = !ZepManager.tx.payloadListModel.checkPayload(root.bare(root.text), root.mModel.optionAck || root.mModel.optionMail);
    }

    Connections {
        function onPayloadChecked(index: int, status: bool) {
            if (index === root.mModel.index) {
                root.malformed = !status;
            }
        }

        target: ZepManager.tx.payloadListModel
    }
}
