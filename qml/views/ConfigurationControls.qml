// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Controls.impl
import QtQuick.Dialogs
import QtQuick.Layouts
import Style
import com.sarvane.qml
import "../types" as T

/// Reads the whole configuration of a device, uploads it, and moves it from and to a file.
RowLayout {
    id: root

    /// A file that was chosen is not read; \a message is for the user.
    signal importRefused(message: string)

    spacing: 10

    T.BusyIndicator {
        id: configSpinner

        Accessible.name: qsTr("Configuration under way")
        Layout.rightMargin: 4

        // Not a plain binding, which a button would end when it shows the spinner.
        Binding on visible {
            restoreMode: Binding.RestoreNone
            value: ZepManager.processingData
        }
    }

    T.GetButton {
        Accessible.name: qsTr("Configuration") + ": " + mToolTip
        visible: !configSpinner.visible

        onClicked: ZepManager.getConfig()
    }

    T.Button {
        id: uploadButton

        ToolTip.delay: 2000
        ToolTip.text: qsTr("Upload global configuration to the Ranger")
        ToolTip.timeout: 3000
        ToolTip.visible: hovered
        enabled: !ZepManager.processingData
        implicitWidth: 150
        mColor: Style.color.lightGreen
        mText: qsTr("Upload config")

        onClicked: ZepManager.uploadConfig()
    }

    FileButton {
        id: importConfigButton

        ToolTip.text: qsTr("Import configuration file")
        icon.source: "qrc:/images/import.svg"

        onClicked: {
            importDialog.open();
            configSpinner.visible = true;
        }
    }

    FileButton {
        id: exportConfigButton

        ToolTip.text: qsTr("Export configuration")
        icon.source: "qrc:/images/export.svg"

        onClicked: {
            exportDialog.open();
            configSpinner.visible = true;
        }
    }

    T.FileDialog {
        id: importDialog

        fileMode: FileDialog.OpenFile
        mOverlay: root.Overlay.overlay
        nameFilters: [qsTr("Conf files (*.cfg *.cnf *.conf *.config *.ini *.log *.txt)")]
        title: qsTr("Please choose your configuration file")

        onAccepted: {
            const file = currentFile.toString();
            const name = decodeURIComponent(file.slice(file.lastIndexOf("/") + 1));
            // Reading a file with fonts in it can block the interface.
            if ([".doc", ".ppt", ".odt"].some(suffix => name.includes(suffix))) {
                // Not reject(), which does nothing any more once the dialog is closed.
                rejected();
                root.importRefused(qsTr("%1 is a document (.doc, .ppt, .odt) and no configuration!").arg(name));
            } else {
                ZepManager.importConfig(file);
            }
        }
        onRejected: configSpinner.visible = false
    }

    T.SaveDialog {
        id: exportDialog

        defaultSuffix: "conf"
        mOverlay: root.Overlay.overlay
        modality: Qt.ApplicationModal
        title: qsTr("Export config to file...")

        onAccepted: ZepManager.exportConfig(currentFile)
        onRejected: configSpinner.visible = false
    }

    component FileButton: T.Button {
        id: button

        Accessible.name: ToolTip.text
        ToolTip.delay: 500
        ToolTip.timeout: 2000
        ToolTip.visible: hovered || visualFocus
        enabled: !ZepManager.processingData
        icon.color: "white"
        icon.height: 16
        icon.width: 16
        mColor: Style.color.lightBlue

        contentItem: IconLabel {
            display: IconLabel.IconOnly
            icon: button.icon
        }
    }
}
