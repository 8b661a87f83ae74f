// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QBuffer>
#include <QSignalSpy>

#include "Aborts.h"
#include "Criticals.h"
#include "PrepassModel.h"

class PrepassModelTest : public QObject
{
    Q_OBJECT

    static QString rowsOf(const PrepassModel &model)
    {
        QStringList rows;
        for (int row = 0; row < model.rowCount(); ++row) {
            QStringList fields;
            for (int role = PrepassModel::SatelliteNameRole; role <= PrepassModel::MiddleElevationRole; ++role) {
                fields << model.index(row).data(role).toString();
            }
            rows << fields.join('|');
        }
        return rows.join(" & ");
    }

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "Europe/Paris"); } // an hour is missing there on the day of the tables
    void init() { failOnCritical(); }

    void wrongRowOrRoleEndsTheProgram()
    {
        PrepassModel model;
        model.addPrepass("A", {}, {}, 0, false);
        verifyBounds(model, "src/models/PrepassModel", "prepass");
    }

    void tableIsTakenOrRefused_data()
    {
        QTest::addColumn<QByteArray>("table");
        QTest::addColumn<QByteArray>("reason");
        QTest::addColumn<QString>("rows");
        const QByteArray head = "Satellite,Start date/time,Middle date/time,End date/time,Duration,Middle elevation,"
                                "Start azimuth,Middle azimuth,End azimuth\n";
        const QByteArray good = "S,03-29-2026 02:30:00,,,00:09:59,12.345,,,\n"; // in the missing hour
        const QByteArray late = "T,03-30-2026 00:00:00,,,23:59:59,5,,,\n";
        const QByteArray now = "U,03-29-2026 02:00:00,,,00:20:00,5,,,\n"; // ends now
        const QString row = "S|Sun Mar 29, 02:30:00|00:09:59|12.35";
        const QString lateRow = "T|Mon Mar 30, 00:00:00|23:59:59|5.00";
        const auto with = [](QByteArray text, const char *part, const QByteArray &other) {
            return text.replace(part, other);
        };

        const QByteArray header = "The CSV file header(s) are not correct";
        QTest::newRow("header's case") << with(head, "Duration", "duration") + good << header << "OLD|||0.00";
        const QByteArray syntax = "The CSV file syntax is not correct";
        QTest::newRow("ten names") << with(head, "\n", ",\n") + good << syntax << "OLD|||0.00";
        QTest::newRow("eight fields") << head + good + "A;B;C;D;E;F;G;H" << syntax << row;
        QTest::newRow("ten fields") << head + good + with(good, "12.3", "12,3") << syntax << row;
        QTest::newRow("blank line") << head + '\n' + good << syntax << "";
        QTest::newRow("2 MiB") << head + good + with(good, ",,,\n", QByteArray(0x200000, ' ') + ",,,") << syntax << row;
        const QByteArray date = "Wrong date format";
        QTest::newRow("no such day") << head + good + with(good, "03-29", "02-29") << date << row;
        QTest::newRow("no such hour") << head + with(good, "02:30", "24:00") << date << "";
        QTest::newRow("sign for a digit") << head + with(good, "2026", "-026") << date << "";
        QTest::newRow("bad after good, unsorted")
            << head + late + good + with(good, "03-29", "tomorrow") << date << lateRow + " & " + row;

        const QByteArray taken;
        QTest::newRow("nothing") << taken << taken << "OLD|||0.00";
        QTest::newRow("header alone") << head.trimmed() << taken << "";
        QTest::newRow("BOM, CRLF") << "\xEF\xBB\xBF" + with(head + good, "\n", "\r\n") << taken << row;
        QTest::newRow("mixed, sorted") << with(head, ",", ";") + late + with(with(good, ",", ";"), ".", ",") << taken
                                       << QString(row).replace("12.35", "0.00") + " & " + lateRow;
        QTest::newRow("quote, UTF-8") << head + with(good, "S", "\"\xC3\xA9") << taken << "\"é" + row.mid(1);
        QTest::newRow("over") << head + now + with(now, "00:20:00", "00:19:59") << taken << "";
        QTest::newRow("not yet over") << head + with(now, "20:00", "20:01") << taken
                                      << "U|Sun Mar 29, 02:00:00|00:20:01|5.00";
        QTest::newRow("25 hours") << head + with(good, "00:09", "25:09") << taken << QString(row).remove("00:09:59");
        QTest::newRow("negative hour") << head + with(good, "00:09", "-01:09") << taken
                                       << QString(row).remove("00:09:59");
    }

    void tableIsTakenOrRefused()
    {
        QFETCH(QByteArray, table);
        QFETCH(const QByteArray, reason);
        PrepassModel model;
        model.addPrepass("OLD", {}, {}, 0, false);
        QBuffer file(&table);
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        if (!reason.isEmpty()) {
            expectCritical(reason);
        }
        QCOMPARE(model.loadFromCsv(file, QDateTime(QDate(2026, 3, 29), QTime(2, 20), Qt::UTC)), reason.isEmpty());
        QTEST(rowsOf(model), "rows");
    }

    void everyRoleIsNotifiedAndOnlyTheMarkIsStored()
    {
        PrepassModel model;
        model.addPrepass("A", {}, {}, 0, false);
        QSignalSpy changed(&model, &PrepassModel::dataChanged);
        model.setIsActive(0, true);
        QVERIFY(model.setData(model.index(0), "B", PrepassModel::SatelliteNameRole));
        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed.at(1).at(2).value<QList<int>>(), QList<int>{PrepassModel::SatelliteNameRole});
        QVERIFY(model.getIsActive(0) && rowsOf(model) == "A|||0.00");
    }
};

QTEST_GUILESS_MAIN(PrepassModelTest)
#include "tst_prepassmodel.moc"
