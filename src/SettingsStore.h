// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// Guards the settings file against a full disk. QSettings replaces the file as a whole, but does not see that the last
/// block of the new one could not be written: a file that is torn, or empty, can so take the place of a whole one.
namespace SettingsStore {

/// Keeps a copy of the file beside it, in place of the copy before. Called when all is written. A file that does not
/// hold each key is torn: that is told on the process log, and no copy is kept of it.
void keepCopy();

/// Puts the copy in the place of the file when this one's last line has no end. What stood there is kept beside them,
/// for it may have been edited by hand. Called before anything is read.
void mend();

} // namespace SettingsStore
