// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import Settings
import Shortcuts
import Style
import TxManager
import ZepBoard
import com.sarvane.qml
import "types" as T

T.ApplicationWindow {
    id: root

    // Every page reads these through the QML context.
    readonly property bool g_enableInput: !ZepManager.tx.sequenceRunning && !ZepManager.tx.ackPending
    readonly property bool g_importantTxOptionEnabled: false
    readonly property bool g_periodicProfileSelected: ZepManager.tx.selectedProfile === Profile.PERIODIC
    readonly property bool g_prepassOnModuleProfileSelected: ZepManager.tx.selectedProfile === Profile.PREPASS_ON_MODULE
    readonly property bool g_prepassProfileSelected: ZepManager.tx.selectedProfile === Profile.PREPASS
    readonly property bool g_rangerModuleSelected: ZepManager.board?.module === Module.RANGER
    readonly property bool g_tbxModuleSelected: ZepManager.board?.module === Module.TBX
    readonly property bool g_zep1ModuleSelected: ZepManager.board?.module === Module.ZEP1
    readonly property bool g_zep2ModuleSelected: ZepManager.board?.module === Module.ZEP2

    // Where the window was last while it was not maximized.
    property rect mPlace

    /// A size of the settings file, in pixels, or \a fallback where the file was edited into something no window has.
    function usableSize(size: int, fallback: int): int {
        return size >= 200 && size <= 16384 ? size : fallback;
    }

    /// The screen that has most of the title bar of a window at \a place, or null if none has any of it.
    function screenOf(place: rect): var {
        const shared = screen => Math.min(place.x + place.width, screen.virtualX + screen.width) - Math.max(place.x, screen.virtualX);
        const screens = Array.from(Qt.application.screens).filter(screen => shared(screen) > 0 && place.y >= screen.virtualY && place.y < screen.virtualY + screen.height);
        return screens.reduce((best, screen) => best === null || shared(screen) > shared(best) ? screen : best, null);
    }

    /// Moves the window to where it was last, as far as a screen still shows it there.
    function restorePlace(): void {
        mPlace = Qt.rect(Settings.windowX, Settings.windowY, width, height);
        const screen = mPlace.x === -1 && mPlace.y === -1 ? null : screenOf(mPlace);
        if (screen !== null) {
            x = Math.max(screen.virtualX, Math.min(mPlace.x, screen.virtualX + screen.width - width));
            y = Math.max(screen.virtualY, Math.min(mPlace.y, screen.virtualY + screen.height - height));
        }
        visibility = Settings.windowMaximized ? Window.Maximized : Window.Windowed;
    }

    function notePlace(): void {
        if (visibility === Window.Windowed) {
            mPlace = Qt.rect(x, y, width, height);
        }
    }

    height: usableSize(Settings.windowHeight, 850)
    mIsMainWindow: true
    title: qsTr(Qt.application.name)
    width: usableSize(Settings.windowWidth, 1350)

    header: TopBar {
        dashboardPage: dashboard
        settingsPage: settings
        stackView: pages
    }

    Component.onCompleted: restorePlace()
    onClosing: {
        notePlace();
        ZepManager.saveSettings();
        Settings.windowHeight = mPlace.height;
        Settings.windowMaximized = visibility === Window.Maximized;
        Settings.windowWidth = mPlace.width;
        Settings.windowX = mPlace.x;
        Settings.windowY = mPlace.y;
    }
    onHeightChanged: placing.restart()
    onVisibilityChanged: placing.restart()
    onWidthChanged: placing.restart()
    onXChanged: placing.restart()
    onYChanged: placing.restart()

    StackView {
        id: pages

        anchors.fill: parent
        anchors.margins: Style.size.boardMargin
        initialItem: connection

        ConnectionPage {
            id: connection
        }

        DashboardPage {
            id: dashboard

            visible: false
        }

        SettingsPage {
            id: settings

            visible: false
        }
    }

    // Later, because the window grows before it counts as maximized.
    Timer {
        id: placing

        interval: 0

        onTriggered: root.notePlace()
    }

    Shortcut {
        autoRepeat: false
        sequence: Shortcuts.theme

        onActivated: Settings.darkTheme = !Settings.darkTheme
    }

    Loader {
        active: ZepManager.journal.uncleanFiles !== ""
        source: "dialogs/UncleanEndDialog.qml"
    }
}
