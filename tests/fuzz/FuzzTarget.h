// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>

#include "Logger.h"
#include "TxManager.h"
#include "VirtualTime.h"

/// What a file target_<name>.cpp defines: works on one input, with objects of its own, and ends the process when what
/// comes of it is wrong. The working directory is a folder of the process's own, with an empty store of settings, a
/// config.ini without a bulletin service and a journal, and nothing else that another input has left.
void fuzzOne(const QByteArray &input);

namespace Fuzz {
/// Ends the process unless \a condition holds.
void require(bool condition, const char *what);

/// Writes the file \a name of the working directory; a store of settings takes notice however fast it comes.
void write(const QString &name, const QByteArray &content);
/// The user's settings, a name for write().
QString settingsFile();

/// Reads all that a view could bind to: the properties of \a object, of the objects that they lead to, and every role
/// of the rows of models.
void readAll(const QObject *object);

/// The program's clock and event loop. Every input begins at 2026-01-07T10:00:00Z, so that it always has the same
/// effect. The fuzzing engine uses the real time.
VirtualTime &time();

/// A TxManager whose device takes every payload, and confirms it five seconds later.
struct Bench
{
    /// Lets the sequence go on, minute by minute.
    void run(int minutes);

    Logger logger;
    TxManager tx{&logger,
                 [this](const QString &data, const Payload::Options &, bool) {
                     QTimer::singleShot(5000, &logger, [this, data] { tx.onTxDone(data); });
                     return true;
                 },
                 [](const Payload::Options &) {}};
};
} // namespace Fuzz
