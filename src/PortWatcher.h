// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

/// Says when adapters may have appeared or vanished: when the folder of the device nodes changes, or every lookInterval
/// on a system without one.
class PortWatcher : public QObject
{
    Q_OBJECT

public:
    static constexpr int settleTime = 300;    ///< milliseconds from a new node to its final owner and rights
    static constexpr int lookInterval = 2000; ///< milliseconds

    explicit PortWatcher(QObject *parent, const QString &folder = QStringLiteral("/dev"));

Q_SIGNALS:
    void changed();

private:
    QFileSystemWatcher m_watcher;
    QTimer m_timer;
};
