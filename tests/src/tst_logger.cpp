// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Logger.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class TestLogger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void line_data();
    void line();
    void exporting_data();
    void exporting();
};

void TestLogger::line_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("tail");
    QTest::newRow("line end is cut") << qint64(0) << u" a b \r\n"_s << u"] [RNG]  a b"_s;
    QTest::newRow("clock ahead") << qint64(3600) << u"x"_s << u"] [RNG] x"_s;
    QTest::newRow("clock behind") << qint64(-86460) << u"x"_s << u"] [RNG] x"_s;
}

void TestLogger::line()
{
    QFETCH(qint64, offset);
    QFETCH(QString, message);
    Logger logger;
    QString text;
    connect(&logger, &Logger::logCreated, &logger, [&text](const QString &log) { text = log; });
    logger.setUtcOffset(offset);
    const auto stamp = [offset] {
        return QDateTime::currentDateTimeUtc().addSecs(offset).toString(u"[hh:mm:ss:zzz"_s);
    };
    const QString before = stamp();
    logger.log(Logger::RNG, message);
    const QString after = stamp();
    const QString shown = text.left(before.size());
    QVERIFY2(after < before /* midnight */ || (before <= shown && shown <= after), qPrintable(text));
    QTEST(text.mid(before.size()), "tail");
}

void TestLogger::exporting_data()
{
    QTest::addColumn<QString>("logs");
    QTest::addColumn<bool>("filter");
    QTest::addColumn<QByteArray>("content");
    const QString session = u"[10:00:00:000] [APP] AT+ID=?\r\n[10:00:00:100] [ZEP] +ID=AT+1\n"
                            "[10:00:00:200] [APP] Sending AT+FW=?\n[10:00:00:300] [ZEP] AT+TX=caf\u00e9\nAT+SN=?"_s;
    QTest::newRow("whole") << session << false << session.toUtf8();
    QTest::newRow("commands") << session << true << QByteArray("AT+ID=?\nAT+TX=caf\xc3\xa9\n");
    QTest::newRow("no command") << u"[10:00:00:000] [APP] AT+\n\n"_s << true << QByteArray();
}

void TestLogger::exporting()
{
    QFETCH(QString, logs);
    QFETCH(bool, filter);
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"a log.txt"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(1000, 'o')) == 1000);
    file.close();
    Logger logger;
    logger.exportLogsToFile(QUrl::fromLocalFile(file.fileName()).toString(), logs, filter);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QTEST(file.readAll(), "content");
    QTest::failOnWarning(QRegularExpression(u"."_s)); // a folder that is not there: not written, without a word
    logger.exportLogsToFile(u"file:///nowhere/log.txt"_s, logs, filter);
}

QTEST_GUILESS_MAIN(TestLogger)
#include "tst_logger.moc"
