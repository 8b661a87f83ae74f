// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CommandHistory.h"
#include "ScriptedSession.h"

#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCommandHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsOfThisRunAndOfEarlierOnesAreFoundByTheirBeginning()
    {
        const Place place{QString()};
        QVERIFY(place.folder.isValid());
        for (const QString &command : {u"AT+ID=?"_s, u"AT+FW=?"_s, u"AT+ID=?"_s, u"AT+ID=?"_s, u""_s}) {
            CommandHistory().add(command); // each in a run of its own
        }
        CommandHistory history;
        history.add(u"AT+LORA_AKEY=00,11"_s);
        QCOMPARE(history.older(u"AT+F"_s), u"AT+FW=?"_s);
        QCOMPARE(history.older(u"AT+FW=?"_s), u"AT+FW=?"_s); // no older one
        QCOMPARE(history.newer(u"AT+FW=?"_s), u"AT+F"_s);
        QCOMPARE(history.newer(u"AT+F"_s), u"AT+F"_s);
        QString shown;
        for (const QString &next : {u"AT+LORA_AKEY=00,11"_s, u"AT+ID=?"_s, u"AT+FW=?"_s, u"AT+ID=?"_s}) {
            shown = history.older(shown);
            QCOMPARE(shown, next);
        }
        QCOMPARE(history.newer(shown), u"AT+FW=?"_s);
        QCOMPARE(CommandHistory().older({}), u"AT+ID=?"_s); // a key is not stored

        for (int i = 0; i < 2 * CommandHistory::sizeMax; ++i) {
            history.add(u"AT+TX=%1"_s.arg(i));
        }
        const QStringList stored = QSettings().value("commandHistory").toStringList();
        QCOMPARE(stored.size(), CommandHistory::sizeMax);
        QCOMPARE(stored.constFirst() + stored.constLast(), u"AT+TX=100AT+TX=199"_s);
    }

    void completionGoesAsFarAsTheCommandsAgree()
    {
        const QStringList words{u"LORA_ACK"_s, u"LORA_AKEY"_s, u"PREPASS_CFG"_s, u"PREPASS_EN"_s, u"PWR"_s};
        for (const auto &[typed, completed] : {std::pair("AT+L", "AT+LORA_A"),
                                               {"at+lora_ac", "AT+LORA_ACK"},
                                               {"A", "AT+"},
                                               {"AT+", "AT+"},
                                               {"AT+PW", "AT+PWR"},
                                               {"AT+PWR=1", "AT+PWR=1"},
                                               {"AT+NEW", "AT+NEW"}}) {
            QCOMPARE(CommandHistory::complete(QString::fromLatin1(typed), words), QString::fromLatin1(completed));
        }
    }
};

QTEST_GUILESS_MAIN(TestCommandHistory)
#include "tst_commandhistory.moc"
