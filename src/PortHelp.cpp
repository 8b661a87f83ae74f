// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PortHelp.h"

#include <QCoreApplication>

namespace {
QString tr(const char *text)
{
    return QCoreApplication::translate("PortHelp", text);
}

QString busyHelp(const PortRefusal &refusal)
{
    if (refusal.holder == QLatin1String("ModemManager")) {
        return tr(
            "ModemManager asks each new port whether it is a modem. Connect again in half a minute. To keep it off "
            "this adapter, see \"Who else takes the port\" in the README.");
    }
    if (refusal.holder.isEmpty()) {
        return tr("Another program uses the port. Close it and connect again.");
    }
    return tr("The program %1 (process %2) uses the port. Close it and connect again.")
        .arg(refusal.holder)
        .arg(refusal.holderId);
}
} // namespace

QString portHelp(const PortRefusal &refusal)
{
    switch (refusal.reason) {
    case PortRefusal::Gone:
        return tr("There is no such port now. Plug the kit in, or choose another port.");
    case PortRefusal::Forbidden:
        if (refusal.group.isEmpty()) {
            return tr("You may not use the port.");
        }
        return tr("The port belongs to the group \"%1\". Join it by this command, and log in again:\nsudo adduser %2 "
                  "%1")
            .arg(refusal.group, refusal.user);
    case PortRefusal::Busy:
        return busyHelp(refusal);
    case PortRefusal::Unknown:
        break;
    }
    return {};
}
