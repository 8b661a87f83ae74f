// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ScriptedSession.h"

#include "Criticals.h"
#include "Identity.h"

#include <QDir>
#include <QSettings>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

Place::Place(const QString &aopUrl, bool hasJournal)
{
    failOnCritical();
    if (!folder.isValid()) {
        qFatal("no folder: %s", qPrintable(folder.errorString()));
    }
    QCoreApplication::setOrganizationName(Identity::organization);
    QCoreApplication::setApplicationName(Identity::name);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
    QDir::setCurrent(folder.path());
    QSettings config(u"config.ini"_s, QSettings::IniFormat);
    config.setValue("Prepass/aopWebRequestUrl", aopUrl);
    config.setValue("Journal/enabled", hasJournal);
}

ScriptedSession::ScriptedSession(const QString &aopUrl, bool hasJournal)
    : m_place(aopUrl, hasJournal), peer(nullptr), manager(nullptr)
{
    for (const auto &[request, answer] : {
             std::pair{u"AT+PING=?"_s, u"+OK"_s},
             {u"AT+ID=?"_s, u"+ID=00aabb"_s},
             {u"AT+FW=?"_s, u"+FW=1,SW1.4.0"_s},
             {u"AT+SN=?"_s, u"+SN=ZEP12345678901"_s},
             {u"AT+ADDR=?"_s, u"+ADDR=1f2e"_s},
             {u"AT+RCONF=?"_s, u"+RCONF=399900000,401600000,27,HRA2"_s},
             {u"AT+ATXFRQ=?"_s, u"+ATXFRQ=401650000"_s},
             {u"AT+PWR=?"_s, u"+PWR=1000"_s},
             {u"AT+ATXRP=0"_s, u"+OK"_s},
             {u"AT+TXFIFO="_s, u"+OK"_s},
         }) {
        peer.answer(request, {answer});
    }
    for (const QString &word : questionsToARanger().split(u' ')) {
        peer.answer("AT+"_L1 + word + "=*"_L1, {u"+OK"_s});
    }
    QObject::connect(manager.logger(), &Logger::logCreated, &manager,
                     [this](const QString &line) { log << line.section(u"] "_s, 1); });
}

bool ScriptedSession::connectTo(ZepBoard::Module module, const QString &baudRate)
{
    QSignalSpy connected(&manager, &ZepManager::connected);
    if (module == ZepBoard::RANGER) {
        QObject::connect(&manager, &ZepManager::userActionRequested, &peer,
                         [this] { peer.say("RANGER -- BUTTON PUSHED"); });
    }
    manager.connect(module, peer.path(), baudRate);
    return connected.count() == 1;
}

QString ScriptedSession::questionsToARanger()
{
    return u"PREPASS_EN UDATE ZEP_REDUN LORA_EN LORA_REDUN LORA_DEUI LORA_AEUI LORA_AKEY LORA_ACK ALRT_LIGHT ALRT_ACC "
           "ALRT_DRYC ALRT_PB PACQ_SENS ALRT_SENS PACQ POS AOP PREPASS_CFG"_s;
}
