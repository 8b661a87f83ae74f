// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLoggingCategory>

// The process log, for the developers and the support; the user's own log is Logger. Only critical messages are
// enabled by main().
Q_DECLARE_LOGGING_CATEGORY(lcEvents) ///< zepgui.events: what happened
Q_DECLARE_LOGGING_CATEGORY(lcWire)   ///< zepgui.wire: bytes and lines on the serial link
