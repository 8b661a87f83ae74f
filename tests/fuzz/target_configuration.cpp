// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// A configuration file: imported into a Ranger, and exported again.

#include "FuzzTarget.h"
#include "ZepManager.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

void fuzzOne(const QByteArray &input)
{
    const QString imported = QDir::current().filePath(u"imported"_s);
    const QString exported = QDir::current().filePath(u"exported"_s);
    Fuzz::write(imported, input);
    QFile::remove(exported);

    ZepManager manager(nullptr);
    QStringList told;
    QObject::connect(&manager, &ZepManager::processingDataChanged, &manager,
                     [&told](const QString &message, bool error) { told << (error ? u"!"_s : QString()) + message; });
    // A port that cannot be opened leaves a session without a wire.
    manager.connect(ZepBoard::RANGER, u"no-such-port"_s, u"Default"_s);
    manager.importConfig(imported);
    Fuzz::require(told == QStringList(u"Configuration imported!"_s) ||
                      told == QStringList(u"!Unable to import config!"_s),
                  "an import has not told its end");
    Fuzz::readAll(&manager);

    manager.exportConfig(exported);
    Fuzz::require(!manager.processingData(), "an export has not ended");
    QFile file(exported);
    Fuzz::require(file.open(QIODevice::ReadOnly), "an export has left no file");
    const QByteArray text = file.readAll();
    Fuzz::require(text.startsWith("AT+") && text.endsWith("\r\n") && text.count("\r\n") == text.count("AT+"),
                  "an export is not made of whole commands");
    manager.disconnect();
}
