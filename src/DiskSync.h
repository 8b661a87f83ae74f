// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/// Moves what the system holds in memory of the file or folder at \a path to the disk, so that it survives a power cut.
/// A new file needs this for its folder as well. Blocks for as long as the disk takes, which can be seconds. False when
/// the system reports an error.
bool syncToDisk(const QString &path);
