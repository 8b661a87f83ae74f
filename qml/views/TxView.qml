// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts

import com.sarvane.qml
import Shortcuts
import Strings
import Style

import "../delegates"
import "../dialogs"
import "../types" as T

// The payloads and the sequence that sends them.
T.ExpandableView {
    id: root

    readonly property int payloadListSizeMax: 16
    readonly property bool txLocked: ZepManager.tx.sequenceRunning || ZepManager.tx.ackPending
    property bool txSequenceCompleted: false
    readonly property bool txStopping: !ZepManager.tx.sequenceRunning && ZepManager.tx.ackPending

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool importantTxOptionEnabled: g_importantTxOptionEnabled
    readonly property bool prepassOnModuleProfileSelected: g_prepassOnModuleProfileSelected
    readonly property bool prepassProfileSelected: g_prepassProfileSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    // Untyped, for what the tools know no type of and for the passes that a module computes, which may not be there.
    readonly property var mTx: ZepManager.tx

    function lastTwoDigits(number: int): string {
        return ("0" + number).slice(-2);
    }

    function countdown(seconds: int): string {
        return lastTwoDigits(Math.floor(seconds / 3600)) + ":" + lastTwoDigits(Math.floor(seconds / 60) % 60) + ":" + lastTwoDigits(seconds % 60);
    }

    function getTxInfo(): string {
        if (txSequenceCompleted) {
            return qsTr("Transmission complete!");
        }
        const remaining = countdown(ZepManager.tx.timeUntilNextTx);
        if (prepassOnModuleProfileSelected) {
            if (ZepManager.tx.computingSatelliteNextPass) {
                return qsTr("Computing satellite next pass...");
            }
            return mTx.prepassProfile?.nextPassModel.getIsActive(0)
                ? qsTr("Waiting for ACK... Remaining pass duration <b>%1</b>").arg(remaining)
                : qsTr("Next satellite pass in <b>%1</b>").arg(remaining);
        }
        return ZepManager.tx.ackPending ? qsTr("Waiting for ACK...") : qsTr("Next transmission in <b>%1</b>").arg(remaining);
    }

    /// Of two buttons of which only one shows at a time, the other one has the focus now.
    function handOver(from: Button, to: Button): void {
        if (to.visible && from.focus) {
            to.focus = true;
        }
    }

    layoutId: 2
    viewTitle: qsTr("Tx payloads")

    mHeader: [
        T.ToolButton {
            Layout.leftMargin: 9
            Layout.rightMargin: 9
            enabled: !root.prepassProfileSelected
            mToolTip: qsTr("Request the satellite acknowledgment")
            text: qsTr("ACK")
            visible: root.zep2ModuleSelected
        },
        T.ToolButton {
            Layout.leftMargin: 9
            Layout.rightMargin: 9
            enabled: !root.prepassProfileSelected
            icon.source: "qrc:/images/mail.svg"
            mToolTip: qsTr("Check for any downlink message")
            visible: root.zep2ModuleSelected
        },
        T.ToolButton {
            Layout.leftMargin: 9
            Layout.rightMargin: 9
            icon.source: "qrc:/images/exclamation.svg"
            mToolTip: qsTr("Increase repetition and QoS")
            visible: root.importantTxOptionEnabled && (root.prepassProfileSelected || root.prepassOnModuleProfileSelected)
        }
    ]

    Label {
        font.pointSize: 11
        opacity: 0.8
        text: root.getTxInfo()
        textFormat: Text.StyledText
        visible: root.txLocked
    }

    ListView {
        id: payloadListView

        // Not the list's own current row, which draws the focus to itself when it changes, away from a field in use.
        property int mCurrentRow: 0

        function show(row: int): void {
            mCurrentRow = row;
            positionViewAtIndex(row, ListView.Contain);
        }

        Layout.fillHeight: true
        Layout.fillWidth: true
        // All rows exist all the time, in order: the Tab key leads through them.
        cacheBuffer: 2000
        clip: true
        currentIndex: -1
        focus: true
        keyNavigationEnabled: false
        model: ZepManager.tx.payloadListModel

        ScrollBar.vertical: ScrollBar {
            id: listScrollBar

            active: false
        }

        add: Transition {
            NumberAnimation {
                duration: 200
                from: 0
                property: "opacity"
                to: 1.0
            }

            NumberAnimation {
                duration: 200
                from: 0
                property: "scale"
                to: 1.0
            }
        }
        delegate: TxPayloadDelegate {}
        displaced: Transition {
            NumberAnimation {
                duration: 200
                properties: "x,y"
            }
        }

        Accessible.name: root.viewTitle
        Accessible.role: Accessible.List
    }

    RowLayout {
        spacing: 0

        Label {
            color: Material.primary
            font.pointSize: 10
            text: qsTr("TX payloads length must be %1 bytes").arg(ZepManager.tx.modulationModel.allowedSizeListStr)
            textFormat: Text.PlainText
        }

        T.ToolButton {
            icon.height: 16
            icon.source: "qrc:/images/question.svg"
            icon.width: 16
            mToolTip: qsTr("Payload allowed lengths depends on your modulation") + (root.zep2ModuleSelected ? qsTr(" (if enabled, 2 bytes are used for ack or downlink options)") : "")
            opacity: 0.5
        }
    }

    RowLayout {
        spacing: 10

        Label {
            text: qsTr("Repeat")
        }

        SpinBox {
            id: repeatSequenceInput

            Layout.preferredWidth: 120
            ToolTip.delay: 500
            ToolTip.text: qsTr("Repeat the sequence N times")
            ToolTip.timeout: 3000
            ToolTip.visible: hovered
            enabled: !root.txLocked
            from: 1
            to: 10
            value: 1
            visible: !root.txLocked

            Accessible.name: qsTr("Repeat")
        }

        Label {
            text: "<b>" + root.mTx.currentSequenceRepeatCount + "</b>/" + repeatSequenceInput.value
            textFormat: Text.StyledText
            visible: !repeatSequenceInput.visible
        }

        Item {
            Layout.fillWidth: true
        }

        T.Button {
            id: addButton

            Layout.preferredWidth: 50
            ToolTip.delay: 1000
            ToolTip.text: Shortcuts.hint(qsTr("Add a payload message"), Shortcuts.addPayload)
            ToolTip.timeout: 3000
            ToolTip.visible: hovered
            enabled: payloadListView.count < root.payloadListSizeMax && !(root.prepassOnModuleProfileSelected ? ZepManager.tx.computingSatelliteNextPass : ZepManager.tx.ackPending)
            mColor: Style.color.lightGrey
            mText: qsTr("Add")

            onClicked: {
                ZepManager.tx.addPayloadItem("");
                if (!root.txLocked) {
                    payloadListView.show(payloadListView.count - 1);
                }
            }
        }

        T.SequenceButton {
            id: startButton

            Layout.preferredWidth: 100
            ToolTip.delay: 1000
            ToolTip.text: Shortcuts.hint(qsTr("Start Tx sequence"), Shortcuts.start)
            ToolTip.timeout: 3000
            ToolTip.visible: hovered
            enabled: payloadListView.count > 0
            mColor: Style.color.lightGreen
            mText: qsTr("Start")
            visible: !root.txLocked

            onActivated: {
                ZepManager.tx.start(repeatSequenceInput.value);
                payloadListView.mCurrentRow = 0;
                listScrollBar.position = 0;
            }
            onVisibleChanged: root.handOver(stopButton, startButton)
        }

        T.SequenceButton {
            id: stopButton

            Layout.preferredWidth: 100
            ToolTip.delay: 1000
            ToolTip.text: Shortcuts.hint(root.txSequenceCompleted ? qsTr("Reset Tx sequence") : qsTr("Stop Tx sequence"), Shortcuts.stop)
            ToolTip.timeout: 3000
            ToolTip.visible: hovered
            enabled: ZepManager.tx.sequenceRunning || !ZepManager.tx.ackPending
            mColor: root.txSequenceCompleted ? Style.color.lightBlue : Style.color.lightRed
            mText: root.txSequenceCompleted ? qsTr("Reset") : root.txStopping ? qsTr("Stopping...") : qsTr("Stop")
            visible: root.txLocked

            onActivated: ZepManager.tx.stop()
            onVisibleChanged: root.handOver(startButton, stopButton)
        }

        BusyIndicator {
            Layout.preferredHeight: 32
            Layout.preferredWidth: 32
            Material.accent: Style.color.sarvanePink
            running: visible
            visible: root.txStopping

            Accessible.name: qsTr("Stopping...")
        }
    }

    T.ButtonShortcut {
        mButton: addButton
        sequence: Shortcuts.addPayload
    }

    T.ButtonShortcut {
        mButton: startButton
        sequence: Shortcuts.start
    }

    T.ButtonShortcut {
        mButton: stopButton
        sequence: Shortcuts.stop
    }

    ViewDialog {
        id: txErrorDialog

        anchors.centerIn: parent
        standardButtons: Dialog.Ok

        Label {
            text: Strings.portalLink
            textFormat: Text.RichText
            visible: txErrorDialog.title.includes("CSV")

            onLinkActivated: link => Qt.openUrlExternally(link)
        }
    }

    Connections {
        function onCurrentIndexUpdated(idx: int) {
            payloadListView.show(idx);
        }

        function onSequenceCompleted() {
            listScrollBar.position = 0;
            root.txSequenceCompleted = true;
        }

        // No handler, and so never called: the list stays at the malformed payload.
        function sequenceStopped() {
            listScrollBar.position = 0;
        }

        // A device that resets ends a sequence, too.
        function onSequenceRunningChanged() {
            root.txSequenceCompleted = false;
        }

        function onTxErrorOccured(error: string) {
            txErrorDialog.title = error;
            txErrorDialog.open();
        }

        target: ZepManager.tx
    }
}
