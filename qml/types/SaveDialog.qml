// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick.Dialogs
import "." as T

/// Asks for the name of a file to write, starting in the documents folder.
T.FileDialog {
    acceptLabel: qsTr("Save")
    fileMode: FileDialog.SaveFile
}
