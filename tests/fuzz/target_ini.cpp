// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// config.ini: the extra ports, the folder of the radio configurations, the address of the bulletins. The address is
// read and not called: an input of the engine's own making must not reach out of the process.

#include "FuzzTarget.h"
#include "ZepManager.h"

#include <QDir>

void fuzzOne(const QByteArray &input)
{
    for (const char *const folder : {"res/rconf", "rconf"}) {
        QDir().mkpath(QString::fromLatin1(folder));
        Fuzz::write(QString::fromLatin1(folder) + "/radio_conf_399_401_27_HRZ.bin", "0123456789abcdef");
    }
    Fuzz::write("config.ini", input);
    ZepManager manager(nullptr);
    manager.serialPort()->enumerate();
    for (int modulation = 0; modulation < ModulationModel::MODULATION_LAST; ++modulation) {
        manager.tx()->changeModulationRadioConfiguration(static_cast<ModulationModel::Modulation>(modulation));
    }
    Fuzz::readAll(&manager);
}
