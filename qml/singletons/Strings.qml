// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma Singleton

import QtQuick
import Style

/// The long rich texts of the help dialogs, and where their links lead.
QtObject {
    id: root

    /// The operator's portal, which the tables of passes are exported from.
    readonly property string portalUrl: "https://helioweb.sarvane.example/"
    readonly property string portalLink: "<a style=\"color:" + Style.color.sarvanePink + "\" href=\"" + portalUrl + "\">HelioWeb</a>"
    readonly property Tuto tuto: Tuto {
        portalLink: root.portalLink
    }

    component Tuto: QtObject {
        id: tuto

        required property string portalLink

        readonly property string modulation: heading(3, qsTr("Modulation")) + rule
            + heading(3, qsTr("HRA2")) + paragraph(qsTr("TX payloads length must be 4, 8, 12, 16, 20 or 24 bytes (minus 2 bytes if ACK or downlink is enabled)."))
            + heading(3, qsTr("HRZ")) + paragraph(qsTr("TX payloads length must be 19 bytes (minus 2 bytes if ACK or downlink is enabled)."))
            + heading(3, qsTr("SHRA4")) + paragraph(qsTr("TX payloads length must be 3 bytes (minus 2 bytes if ACK or downlink is enabled)."))

        readonly property string welcome: heading(4, qsTr("Hello there!") + rule)
            + paragraph(qsTr("This app is dedicated to control Sarvane evaluation kits for <b>ZEP modules</b> or to configure the <b>Ranger</b> device.<br>It will help you to evaluate the Sarvane <b>network and technology</b> and through a representative application using Sarvane modules."))
            + paragraph(qsTr("Please contact Sarvane support team for any issue with this tool."))

        readonly property string txProfiles: heading(3, qsTr("Transmission profiles"))
            + paragraph(qsTr("A transmission profile is a transmission strategy to ensure that the evaluation kit plugged in your PC or the Ranger device will transmit the payload with the <b>best compromise</b> between Tx efficiency and satellite visibility."))
            + "<br>" + heading(4, qsTr("Periodic") + rule)
            + paragraph(qsTr("<b>ZEP1/ZEP2</b>: The device transmits one payload from the \"Tx Payloads\" buffer with a period of \"payload interval\" minutes. Each payload is transmitted multiple times according to \"redundancy\" and \"period\" parameters without any information about the satellite visibility. This strategy is largely used when no satellite prediction is computed on the application processor (here the PC)."))
            + paragraph(qsTr("<b>RANGER</b>: The device transmits messages with a period of 60 seconds. Each payload is transmitted multiple times according to \"redundancy\" parameter without any information about the satellite visibility. This strategy is used when the GNSS sensor is disabled and no satellite prediction is computed on the application processor (here the Ranger device)."))
            + "<br>" + heading(4, qsTr("Pre-pass") + rule)
            + paragraph(qsTr("<b>ZEP1</b>: The PC hosted application (GUI here) is using the csv file listing start and end dates of each satellite pass from the constellation. This file has to be previously exported from %1 website. When you click on \"Start\" button, the process schedules timers to send your payloads during satellite passes.").arg(portalLink))
            + paragraph(qsTr("<b>ZEP2</b>: The PC hosted application is just pushing relevant data to the module so that it can calculate on its own the satellite passes and schedule Tx based on your inputs. UTC time can be changed to emulate a fake UTC time and check the behaviour of the application. By default, UTC time is based on the PC clock (UTC time)."))
            + paragraph(qsTr("<b>RANGER</b>: The PC hosted application is just pushing relevant data to the device so that it can calculate on its own the satellite passes and schedule Tx based on your inputs. Each payload is transmitted multiple times according to \"redundancy\" parameter. UTC time is based on the PC clock (UTC time) and cannot be changed."))

        readonly property string rule: "<span style=\"color:" + Style.color.sarvanePink + "\">&nbsp;<hr></span>"

        function heading(level: int, content: string): string {
            return "<h" + level + ">" + content + "</h" + level + ">";
        }

        function paragraph(content: string): string {
            return "<p>" + content + "</p>";
        }
    }
}
