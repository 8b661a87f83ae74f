// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import Style
import com.sarvane.qml
import "." as T

/// Fetches the satellite bulletins, at any time; a spinner takes its place until the answer is there.
RowLayout {
    id: root

    /// Keeps the tooltip from covering something else that shows.
    property bool mToolTipHeldBack: false

    property bool mDownloading: false

    spacing: 0

    T.SetButton {
        ToolTip.visible: (hovered || visualFocus) && !root.mToolTipHeldBack
        enabled: true
        icon.source: "qrc:/images/download.svg"
        mToolTip: qsTr("Download AOP data from HelioWeb")
        visible: !root.mDownloading

        onClicked: {
            root.mDownloading = true;
            ZepManager.tx.prepassProfile.downloadAopData();
        }
    }

    T.BusyIndicator {
        Layout.leftMargin: 4
        Layout.rightMargin: 4
        Accessible.name: qsTr("Downloading AOP data")
        visible: root.mDownloading
    }

    Connections {
        function onAopDataDownloadFinished() {
            root.mDownloading = false;
        }

        target: ZepManager.tx.prepassProfile
    }
}
