// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Material
import QtQuick.Layouts
import Strings
import TxManager
import com.sarvane.qml
import "../dialogs"
import "../types" as T

// The choice of the transmission profile, and the parameters of the chosen one.
ColumnLayout {
    id: root

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool enableInput: g_enableInput
    readonly property bool periodicProfileSelected: g_periodicProfileSelected
    readonly property bool prepassOnModuleProfileSelected: g_prepassOnModuleProfileSelected
    readonly property bool prepassProfileSelected: g_prepassProfileSelected
    readonly property bool rangerModuleSelected: g_rangerModuleSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    readonly property bool anyPrepassSelected: prepassProfileSelected || prepassOnModuleProfileSelected

    /// The one way to change the profile from here. Unless it is a Ranger the module is told first, and where it
    /// refuses, the profile stays.
    function updateProfile(profile: int): void {
        let ret = true;
        if (!rangerModuleSelected) {
            const disablePrepassOnModule = zep2ModuleSelected && prepassOnModuleProfileSelected;
            switch (profile) {
            case Profile.PERIODIC:
            case Profile.PREPASS:
                if (disablePrepassOnModule) {
                    ret = ZepManager.setPrepassEnable(false);
                }
                break;
            case Profile.PREPASS_ON_MODULE:
                ret = ZepManager.setPrepassEnable(true);
                break;
            default:
                console.exception("Invalid profile");
            }
        }
        if (ret) {
            ZepManager.tx.selectedProfile = profile;
        } else {
            restoreButtons();
        }
    }

    // The click has moved the mark already, without a change that would move it back. What is written here is seen
    // until the next change of the profile.
    function restoreButtons(): void {
        if (periodicProfileSelected) {
            periodicRadioButton.checked = true;
        } else {
            prepassRadioButton.checked = true;
            prepassSettings.prepassModuleBasedSwitch.checked = prepassOnModuleProfileSelected;
        }
    }

    function followProfile(): void {
        periodicRadioButton.checked = Qt.binding(() => root.periodicProfileSelected);
        prepassRadioButton.checked = Qt.binding(() => root.anyPrepassSelected);
        prepassSettings.prepassModuleBasedSwitch.checked = Qt.binding(() => root.prepassOnModuleProfileSelected);
    }

    RowLayout {
        Layout.alignment: Qt.AlignTop
        spacing: 0

        T.Label {
            text: qsTr("Choose your transmission profile")
        }

        T.HelpButton {
            mToolTip: qsTr("Need some help about transmission profiles?")

            onClicked: helpDialog.open()
        }

        T.GetButton {
            visible: root.rangerModuleSelected

            onClicked: ZepManager.getPrepassEnable()
        }
    }

    RowLayout {
        spacing: 10

        ColumnLayout {
            spacing: 0

            RadioButton {
                id: periodicRadioButton

                checked: root.periodicProfileSelected
                enabled: root.enableInput
                text: qsTr("Periodic")

                onClicked: root.updateProfile(Profile.PERIODIC)
            }

            RadioButton {
                id: prepassRadioButton

                checked: root.anyPrepassSelected
                enabled: root.enableInput
                text: qsTr("Pre-pass")

                onClicked: root.updateProfile(prepassSettings.prepassModuleBasedSwitch.wasChecked || root.rangerModuleSelected ? Profile.PREPASS_ON_MODULE : Profile.PREPASS)
            }
        }

        Rectangle {
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            color: Material.foreground
        }

        PeriodicSettings {
            visible: root.periodicProfileSelected
        }

        PrepassSettings {
            id: prepassSettings

            visible: root.anyPrepassSelected
        }
    }

    Item {
        Layout.fillHeight: true
    }

    Connections {
        function onSelectedProfileChanged() {
            root.followProfile();
        }

        target: ZepManager.tx
    }

    TutoDialog {
        id: helpDialog

        tutoText: Strings.tuto.txProfiles
        width: root.width
    }
}
