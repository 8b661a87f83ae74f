// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ScriptedPeer.h"
#include "ZepManager.h"

#include <QTemporaryDir>

/// Settings, application data and a working directory of a program's own. Stands before a ZepManager, which reads them
/// when it is made.
struct Place
{
    /// The journal of the sessions is off unless \a hasJournal.
    explicit Place(const QString &aopUrl, bool hasJournal = false);
    QTemporaryDir folder;
};

/// A whole ZepManager on a pseudo terminal whose far end is scripted, with settings and a working directory of its
/// own. The peer answers all that a session asks when it begins. A critical message that is not expected fails the
/// test.
struct ScriptedSession
{
    /// \a aopUrl is the address of the bulletins; empty leads nowhere.
    explicit ScriptedSession(const QString &aopUrl = {}, bool hasJournal = false);

    /// Whether a session with a board of that kind came about. The wake-up button of a Ranger is pressed when asked
    /// for.
    bool connectTo(ZepBoard::Module module, const QString &baudRate = QStringLiteral("Default"));

    /// The words by which the configuration of a Ranger is read, in order and separated by blanks.
    static QString questionsToARanger();

private:
    Place m_place;

public:
    ScriptedPeer peer;
    ZepManager manager;
    QStringList log; ///< Without stamps: "[APP] text"
};
