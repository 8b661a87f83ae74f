// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/// The local path of a file chosen in a dialog. A dialog gives a URL, but the toolkit's own gives a bare path for a
/// name that the user typed; both are taken. Empty for a URL that is not local.
[[nodiscard]] QString localPath(const QString &fileUrl);

/// Whether something else than a file stands at \a path: a folder, a device, or a pipe, whose opening would wait for
/// its other end.
[[nodiscard]] bool isOtherThanFile(const QString &path);
