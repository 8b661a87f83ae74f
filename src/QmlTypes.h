// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QStringListModel>
#include <qqml.h>

/// Tells the QML tools what a property of this type is; the running program knows without it.
struct StringListModelType
{
    Q_GADGET
    QML_FOREIGN(QStringListModel)
    QML_ANONYMOUS
};

/// Makes known to QML what the build does not register by itself: the three singletons of the interface, and the
/// enumerations, each under a module of its own, so that QML writes Module.ZEP2 or Status.ACTIVE. Call it once,
/// before the first QML is loaded.
void registerQmlTypes();
