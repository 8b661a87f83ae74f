// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.Material
import QtQuick.Layouts
import com.sarvane.qml
import "../delegates"

/// Sets the clock of the interface, and that of a module that keeps one, or lets it follow the real time again.
ViewDialog {
    id: root

    property string customIsoDate: now()

    // The root window's global properties, reached through the QML context.
    // qmllint disable unqualified
    readonly property bool rangerModuleSelected: g_rangerModuleSelected
    readonly property bool zep1ModuleSelected: g_zep1ModuleSelected
    readonly property bool zep2ModuleSelected: g_zep2ModuleSelected
    // qmllint enable unqualified

    /// The first of the years to choose from.
    property int mFirstYear: new Date().getUTCFullYear() - 1

    function now(): string {
        // Whole seconds: a module knows no others.
        return new Date().toISOString().replace(/\.\d+/, "");
    }

    function twoDigits(number: int): string {
        return number.toString().padStart(2, "0");
    }

    /// \a count numbers from \a first on, as the pickers show them.
    function numbers(first: int, count: int): var {
        return [...Array(count).keys()].map(offset => root.twoDigits(first + offset));
    }

    function daysOfMonth(month: int, year: int): int {
        const isLeap = new Date(Date.UTC(year, 1, 29)).getUTCMonth() === 1;
        return [31, isLeap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31][month];
    }

    /// The pickers' day stays, or becomes the last one of a shorter month.
    function rebuildDays(): void {
        const count = daysOfMonth(monthPicker.currentIndex, mFirstYear + yearPicker.currentIndex);
        const kept = Math.min(dayPicker.currentIndex, count - 1);
        dayPicker.model = numbers(1, count);
        dayPicker.currentIndex = kept;
    }

    anchors.centerIn: Overlay.overlay
    standardButtons: Dialog.Ok | Dialog.Cancel
    title: qsTr("Set custom UTC time")

    Component.onCompleted: rebuildDays()
    onAboutToShow: {
        const date = new Date();
        result = Dialog.Rejected;
        minutePicker.currentIndex = date.getUTCMinutes();
        hourPicker.currentIndex = date.getUTCHours();
        mFirstYear = date.getUTCFullYear() - 1;
        yearPicker.currentIndex = 1;
        monthPicker.currentIndex = date.getUTCMonth();
        rebuildDays(); // also when only the first year has moved, which no picker tells
        dayPicker.currentIndex = date.getUTCDate() - 1;
    }
    onAccepted: {
        const year = mFirstYear + yearPicker.currentIndex;
        const month = twoDigits(monthPicker.currentIndex + 1);
        const day = twoDigits(dayPicker.currentIndex + 1);
        customIsoDate = year + "-" + month + "-" + day + "T" + twoDigits(hourPicker.currentIndex) + ":" + twoDigits(minutePicker.currentIndex) + ":00Z";
    }
    // Only now, since the answer of a module is waited for.
    onClosed: {
        if (result !== Dialog.Accepted) {
            return;
        }
        if (restoreBox.checked) {
            customIsoDate = now();
        }
        if (zep2ModuleSelected) {
            ZepManager.setModuleUtcDate(customIsoDate);
        } else {
            ZepManager.tx.setCustomUtcTime(customIsoDate);
        }
    }

    ColumnLayout {
        Keys.onEnterPressed: root.accept()
        Keys.onReturnPressed: root.accept()

        RowLayout {
            visible: root.zep1ModuleSelected || root.zep2ModuleSelected

            Picker {
                id: hourPicker

                Accessible.name: qsTr("Hours")
                model: root.numbers(0, 24)
            }

            Picker {
                id: minutePicker

                Accessible.name: qsTr("Minutes")
                model: root.numbers(0, 60)
            }

            Picker {
                id: dayPicker

                Accessible.name: qsTr("Day")
                Layout.leftMargin: 20
            }

            Picker {
                id: monthPicker

                Accessible.name: qsTr("Month")
                model: [...Array(12).keys()].map(month => Qt.locale().standaloneMonthName(month, Locale.ShortFormat))

                onCurrentIndexChanged: root.rebuildDays()
            }

            Picker {
                id: yearPicker

                Accessible.name: qsTr("Year")
                model: root.numbers(root.mFirstYear, 4)

                onCurrentIndexChanged: root.rebuildDays()
            }
        }

        CheckBox {
            id: restoreBox

            checked: root.rangerModuleSelected
            enabled: !root.rangerModuleSelected
            text: qsTr("restore UTC time")
        }
    }

    component Picker: Tumbler {
        Accessible.description: (currentItem as TumblerDelegate)?.text ?? ""
        Accessible.role: Accessible.SpinBox
        delegate: Component {
            TumblerDelegate {}
        }
    }
}
