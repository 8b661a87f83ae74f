// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import Settings
import Style
import com.sarvane.qml
import "../dialogs"

/// The look of every window, and what the device makes each of them do: the main window tells of a lost link, the
/// others close; whichever is on screen asks for the wake-up button.
ApplicationWindow {
    id: root

    property bool mIsMainWindow: false

    function closeIfShown() {
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

    SerialErrorDialog {
        id: serialErrorDialog

        onAccepted: {
            // The board is about to be deleted underneath the connection.
            awakeConnection.target = null;
            ZepManager.disconnect();
        }
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
                serialErrorDialog.open();
            } else {
                root.closeIfShown();
            }
        }
    }
}
