// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QElapsedTimer>
#include <QFile>

/// The log of a simulation: one line for each line that passed, with the ms since the start, a mark for its
/// direction (< to the device, > from it, # on the console) and bytes that cannot be shown as \xNN.
class Trace
{
public:
    /// Starts the log in \a path, anew; false, with errorString() set, if it cannot be written.
    [[nodiscard]] bool open(const QString &path);
    [[nodiscard]] QString errorString() const
    {
        return m_file.fileName() + QStringLiteral(": ") + m_file.errorString();
    }
    /// Nothing while the log is not open.
    void write(char direction, const QByteArray &line);

private:
    QFile m_file;
    QElapsedTimer m_clock;
};
