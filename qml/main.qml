// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import Settings
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

    /// A size of the settings file, in pixels, or \a fallback where the file was edited into something no window has.
    function usableSize(size: int, fallback: int): int {
        return size >= 200 && size <= 16384 ? size : fallback;
    }

    height: usableSize(Settings.windowHeight, 850)
    mIsMainWindow: true
    title: qsTr(Qt.application.name)
    visible: true
    width: usableSize(Settings.windowWidth, 1350)

    header: TopBar {
        dashboardPage: dashboard
        settingsPage: settings
        stackView: pages
    }

    onClosing: {
        ZepManager.saveSettings();
        Settings.windowHeight = height;
        Settings.windowWidth = width;
    }

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

    Loader {
        active: ZepManager.journal.uncleanFiles !== ""
        source: "dialogs/UncleanEndDialog.qml"
    }
}
