// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Templates as Templates
import Settings
import Shortcuts
import Style
import com.sarvane.qml
import "." as T
import "../dialogs"

/// The look of every window, and what the device makes each of them do: the main window tells of a lost link, the
/// others close; whichever is on screen asks for the wake-up button.
ApplicationWindow {
    id: root

    property bool mIsMainWindow: false

    // The controls know the space bar only. A wait is not to be cancelled by mistake. As a property it is the window's
    // own, which a dialog does not block.
    readonly property Shortcut mPress: Shortcut {
        readonly property Templates.AbstractButton mButton: (root.activeFocusItem as Templates.Button) ?? (root.activeFocusItem as Templates.TabButton)

        autoRepeat: false
        enabled: mButton !== null && !wakeUpDialog.visible
        sequences: ["Return", "Enter"]

        onActivated: {
            if (mButton.checkable) {
                mButton.toggle();
            }
            mButton.clicked();
        }
    }

    function closeIfShown(): void {
        if (visible) {
            close();
        }
    }

    Material.accent: Style.color.sarvanePink
    Material.background: Settings.darkTheme ? Style.color.sarvaneDark : Style.color.sarvaneLight
    Material.primary: Settings.darkTheme ? Style.color.sarvaneYellow : Style.color.lightOrange
    Material.theme: Settings.darkTheme ? Material.Dark : Material.Light
    font.family: barlowLoader.name

    FontLoader {
        id: barlowLoader

        source: Style.font.barlow
    }

    T.FocusFrame {
        mFocused: root.activeFocusItem
    }

    SerialErrorDialog {
        id: serialErrorDialog

        onAccepted: {
            // The board is about to be deleted underneath the connection.
            awakeConnection.target = null;
            ZepManager.disconnect();
        }
    }

    Shortcut {
        sequences: Shortcuts.help

        onActivated: {
            shortcutsLoader.active = true;
            (shortcutsLoader.item as ShortcutsDialog).open();
        }
    }

    Loader {
        id: shortcutsLoader

        active: false
        source: "../dialogs/ShortcutsDialog.qml"
    }

    WakeUpDialog {
        id: wakeUpDialog

        onRejected: ZepManager.cancelModuleRequest()
    }

    Connections {
        id: awakeConnection

        target: ZepManager.board

        function onIsAwakeChanged() {
            wakeUpDialog.close();
        }
    }

    Connections {
        target: ZepManager

        function onBoardChanged() {
            awakeConnection.target = ZepManager.board;
        }

        function onDisconnected() {
            // The wait that asked for the button ended with its session.
            wakeUpDialog.close();
            if (!root.mIsMainWindow) {
                root.closeIfShown();
            }
        }

        function onUserActionRequested() {
            if (root.visible) {
                wakeUpDialog.open();
            }
        }
    }

    Connections {
        target: ZepManager.serialPort

        function onSerialError(error: string) {
            if (root.mIsMainWindow) {
                serialErrorDialog.title = error;
                serialErrorDialog.mHelp = ZepManager.serialPort.openHelp;
                serialErrorDialog.open();
            } else {
                root.closeIfShown();
            }
        }
    }
}
