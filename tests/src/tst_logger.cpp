// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Criticals.h"
#include "Logger.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

using namespace Qt::StringLiterals;

class TestLogger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnCritical(); }

    void lineHasTheTimeOfTheClockAndNoEnd()
    {
        Logger logger;
        QString text;
        connect(&logger, &Logger::logCreated, &logger, [&text](const QString &log) { text = log; });
        logger.setUtcOffset(-86460);
        const auto stamp = [] { return QDateTime::currentDateTimeUtc().addSecs(-86460).toString(u"[hh:mm:ss:zzz"_s); };
        const QString before = stamp();
        logger.log(Logger::RNG, u" a b \r\n"_s);
        const QString after = stamp();
        const QString shown = text.left(before.size());
        QVERIFY2(after < before /* midnight */ || (before <= shown && shown <= after), qPrintable(text));
        QCOMPARE(text.mid(before.size()), u"] [RNG]  a b"_s);
    }

    void exporting()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"a log.txt"_s));
        Logger logger;
        const QString session = u"[10:00:00:000] [APP] AT+ID=?\r\n[10:00:00:100] [ZEP] +ID=AT+1\n"
                                "[10:00:00:200] [APP] Sending AT+FW=?\n[10:00:00:300] [ZEP] AT+TX=caf\u00e9\nAT+SN=?"_s;
        for (const auto &[logs, filter, content] : {std::tuple(session, false, session.toUtf8()),
                                                    {session, true, QByteArray("AT+ID=?\nAT+TX=caf\xc3\xa9\n")},
                                                    {u"[10:00:00:000] [APP] AT+\n\n"_s, true, QByteArray()}}) {
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(1000, 'o')) == 1000);
            file.close();
            logger.exportLogsToFile(QUrl::fromLocalFile(file.fileName()).toString(), logs, filter);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), content);
            file.close();
        }
        // A folder that is not there: not written, without a word.
        logger.exportLogsToFile(u"file:///nowhere/log.txt"_s, session, false);
    }
};

QTEST_GUILESS_MAIN(TestLogger)
#include "tst_logger.moc"
