// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

class QSocketNotifier;

/// Tells when a client opens the port. The device's side of a pseudo terminal cannot see that by itself.
class OpenWatcher : public QObject
{
    Q_OBJECT

public:
    explicit OpenWatcher(QObject *parent = nullptr);
    ~OpenWatcher() override;

    /// Watches \a path in place of the one before; false, with errorString() set, if the system refuses.
    [[nodiscard]] bool watch(const QString &path);
    [[nodiscard]] QString errorString() const { return m_errorString; }

Q_SIGNALS:
    void opened();

private:
    void onReadable();

    int m_descriptor = -1;
    int m_watch = -1;
    QString m_errorString;
    QSocketNotifier *m_notifier = nullptr;
};
