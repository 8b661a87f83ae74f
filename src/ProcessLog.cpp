// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ProcessLog.h"

Q_LOGGING_CATEGORY(lcEvents, "zepgui.events")
Q_LOGGING_CATEGORY(lcWire, "zepgui.wire")
