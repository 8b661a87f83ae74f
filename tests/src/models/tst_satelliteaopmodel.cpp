// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QSignalSpy>
#include <QTest>

#include "Aborts.h"
#include "SatelliteAopModel.h"

namespace {

QByteArray document(const QByteArray &satellites)
{
    return R"({"creationDate": "2026-01-07_10:00:00", "satellitesInformation": [)" + satellites + "]}";
}

QByteArray satellite(const QByteArray &name, const QByteArray &ident, const QByteArray &downlink = "Spare, N/A",
                     const QByteArray &uplink = "OUT OF SERVICE")
{
    return R"({"satellite": ")" + name + R"(", "broadcastedStatus": {"fleetfeedIdent": ")" + ident +
           R"(", "downlinkStatus": ")" + downlink + R"(", "operatingStatus": ")" + uplink +
           R"("}, "aop": {"date": "2026-01-06_22:58:17", "semiMajorAxis": 7195.6545, "semiMajorAxisDrift": -1.97,
                          "inclination": 98.7075, "ascendantNodeLongitude": 344.178, "ascendantNodeDrift": -25.34,
                          "orbitalPeriod": 101.3592}})";
}

const QStringList c_numbers{"7195.65", "98.7075", "344.178", "-25.34", "101.359", "-1.97"};

/// What the module says of a satellite.
void report(SatelliteAopModel &model, QChar ident)
{
    model.updateOrAddSatellite(ident, QDateTime(QDate(2025, 1, 1), QTime(0, 0), Qt::UTC), 1, 2, 3, 4, 5, 6, "NA",
                               SatelliteAop::DNLK_NA, SatelliteAop::UPLK_NA);
}

QString text(const SatelliteAopModel &model, int row, SatelliteAopModel::Role role)
{
    return model.data(model.index(row), role).toString();
}

} // namespace

class SatelliteAopModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(".*")); }

    void rejectedDocumentChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("rejected");
        QTest::addColumn<QRegularExpression>("message");
        const QRegularExpression notAnObject("^AOP data error \\(no consistent object\\)$");
        const QRegularExpression syntax("^Error: [a-z]+");
        QTest::newRow("array") << QByteArray("[]") << notAnObject;
        QTest::newRow("errors, whatever else there is")
            << document(satellite("New", "B")).replace(0, 1, "{\"errors\": null, ") << notAnObject;
        QTest::newRow("nothing") << QByteArray() << syntax;
        QTest::newRow("a page") << QByteArray("<html></html>") << syntax;
        QTest::newRow("cut off") << document(satellite("New", "B")).chopped(1) << syntax;
        QTest::newRow("bare NaN") << document(satellite("New", "B").replace("7195.6545", "NaN")) << syntax;
        QTest::newRow("deep nesting") << QByteArray(1000000, '[') << syntax;
    }

    void rejectedDocumentChangesNothing()
    {
        QFETCH(const QByteArray, rejected);
        QFETCH(const QRegularExpression, message);
        SatelliteAopModel model;
        QVERIFY(model.loadAopJson(document(satellite("Old", "A"))));
        QSignalSpy created(&model, &SatelliteAopModel::creationDateChanged);
        QTest::ignoreMessage(QtCriticalMsg, message);
        QVERIFY(!model.loadAopJson(rejected));
        QCOMPARE(created.count(), 0);
        QCOMPARE(model.creationDate(), "Wed Jan 7 10:00:00 2026 GMT (UTC)");
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.satelliteAt(0)->satelliteName, "Old");
    }

    void whatCannotBeReadIsZeroOrEmpty_data()
    {
        QTest::addColumn<QByteArray>("element");
        QTest::addColumn<QString>("parameters"); // name, statuses, bulletin
        const QString zeros(",0,0,0,0,0,0");
        const QByteArray good = satellite("S", "a");
        QTest::newRow("nothing else") << QByteArray(R"({"broadcastedStatus": {"fleetfeedIdent": "axy"}})")
                                      << ",A,0,0,A," + zeros;
        QTest::newRow("arrays for objects")
            << QByteArray(R"({"satellite": {}, "broadcastedStatus": {"fleetfeedIdent": "a", "downlinkStatus": [],
                              "operatingStatus": 3}, "aop": [1]})")
            << ",A,0,0,A," + zeros;
        QTest::newRow("texts for numbers") << QByteArray(good)
                                                  .replace("7195.6545", "\"7195.6\"")
                                                  .replace("98.7075", "\"NaN\"")
                                                  .replace("-25.34", "null")
                                           << "S,A,2,3,A,2026-01-06T22:58:17Z,0,0,344.178,0,101.359,-1.97";
        QTest::newRow("impossible date") << QByteArray(good).replace("2026-01-06_", "2026-02-30_")
                                         << "S,A,2,3,A,," + c_numbers.join(',');
        QTest::newRow("number for a date")
            << QByteArray(good).replace("\"2026-01-06_22:58:17\"", "20260106") << "S,A,2,3,A,," + c_numbers.join(',');
        QTest::newRow("statuses of another case") << satellite("S", "A", "helio-4 TX ON", "OUT OF SERVICE ")
                                                  << "S,A,0,0,A,2026-01-06T22:58:17Z," + c_numbers.join(',');
    }

    void whatCannotBeReadIsZeroOrEmpty()
    {
        QFETCH(const QByteArray, element);
        QFETCH(const QString, parameters);
        SatelliteAopModel model;
        QVERIFY(model.loadAopJson(document(element)));
        QCOMPARE(model.rowCount(), 1);
        const SatelliteAop *read = model.satelliteAt(0);
        QCOMPARE((QStringList{read->satelliteName} + read->statusAtParameters() + read->aopAtParameters()).join(','),
                 parameters);
    }

    void satelliteWithoutIdentIsSkippedAloud()
    {
        SatelliteAopModel model;
        QTest::ignoreMessage(QtCriticalMsg, "Satellites without a fleetfeedIdent in AOP data, skipped: 4");
        QVERIFY(model.loadAopJson(document(R"({}, 7, {"broadcastedStatus": {"fleetfeedIdent": 5}}, )" +
                                           satellite("empty", "") + ", " + satellite("S", "B"))));
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.satelliteAt(0)->ident, 'B');
    }

    void documentsWithoutSatellitesAreAccepted_data()
    {
        QTest::addColumn<QByteArray>("accepted");
        QTest::newRow("empty object") << QByteArray("{}");
        QTest::newRow("object for the array")
            << QByteArray(R"({"creationDate": 1, "satellitesInformation": {"a": 1}})");
    }

    void documentsWithoutSatellitesAreAccepted()
    {
        QFETCH(const QByteArray, accepted);
        SatelliteAopModel model;
        report(model, 'A');
        QSignalSpy created(&model, &SatelliteAopModel::creationDateChanged);
        QVERIFY(model.loadAopJson(accepted));
        QCOMPARE(created.count(), 1);
        QCOMPARE(model.creationDate(), " (UTC)");
        QCOMPARE(model.rowCount(), 1);
    }

    void sourcesMergeInEitherOrder()
    {
        SatelliteAopModel model;
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        report(model, 'A');
        QCOMPARE(text(model, 0, SatelliteAopModel::SatelliteNameRole), "NA");
        QCOMPARE(text(model, 0, SatelliteAopModel::UplinkStatusRole), "");
        QCOMPARE(model.getDownlinkCapability("NA"), "ON"); // not known, and taken for on

        QVERIFY(
            model.loadAopJson(document(satellite("First", "B") + ", " + satellite("Second", "A", "HELIO-4 TX ON"))));
        QCOMPARE(text(model, 0, SatelliteAopModel::SatelliteNameRole), "Second");
        QCOMPARE(text(model, 0, SatelliteAopModel::DownlinkStatusRole), "HELIO-4 "); // with its blank
        QCOMPARE(text(model, 0, SatelliteAopModel::UplinkStatusRole), "OFF");
        QVERIFY(model.isModuleSatellite('a') && !model.isModuleSatellite('B'));

        report(model, 'B');
        QCOMPARE(model.findByIdent('B')->satelliteName, "First");
        QCOMPARE(model.findByIdent('B')->statusAtParameters(), QStringList({"B", "2", "3"}));
        QCOMPARE(model.findByIdent('B')->aopAtParameters(),
                 QStringList({"B", "2025-01-01T00:00:00Z", "1", "2", "3", "4", "5", "6"}));
        QVERIFY(model.isModuleSatellite('B'));
        QCOMPARE(inserted.count(), 2);
        QCOMPARE(changed.count(), 4);
        QCOMPARE(changed.last().first().toModelIndex().row(), 1);
        QCOMPARE(changed.last().last().value<QList<int>>().size(), 4);
    }

    void statusesNeedBothLinksKnown()
    {
        SatelliteAopModel model;
        QVERIFY(model.loadAopJson(document(satellite("S", "A", "Downlink transmitter OFF", "HELIO-4 payload"))));
        model.updateOrAddSatellite('A', {}, 0, 0, 0, 0, 0, 0, "S", SatelliteAop::DNLK_HELIO_3_ON,
                                   SatelliteAop::UPLK_NA);
        QCOMPARE(model.satelliteAt(0)->statusAtParameters(), QStringList({"A", "0", "2"}));
        QCOMPARE(model.getDownlinkCapability("S"), "OFF");
        QCOMPARE(model.getDownlinkCapability("s"), "NA");
    }

    void repeatedSatelliteKeepsItsRowAndTakesTheLastName()
    {
        SatelliteAopModel model;
        QVERIFY(model.loadAopJson(document(satellite("Old", "A") + ", " + satellite("Other", "B") + ", " +
                                           satellite("New", "a", "", "unheard of"))));
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(text(model, 0, SatelliteAopModel::SatelliteNameRole), "New");
        QCOMPARE(text(model, 0, SatelliteAopModel::UplinkStatusRole), "HELIO-3 ");
        QCOMPARE(model.satelliteNameForIdent('a'), "New");
        QCOMPARE(model.satelliteNameForIdent('C'), "NA");
        QVERIFY(model.findByIdent('a') == nullptr);
    }

    void tooltipHasItsUnevenDegreesAndNoForeignMarkup()
    {
        SatelliteAopModel model;
        QVERIFY(model.loadAopJson(document(satellite("S", "<"))));
        QCOMPARE(text(model, 0, SatelliteAopModel::AopDataRole),
                 "<b>fleetfeedIdent:</b> &lt;<br><b>date:</b> Tue Jan 6 22:58:17 2026 GMT<br>"
                 "<b>semiMajorAxis:</b> 7195.65 km<br><b>semiMajorAxisDrift:</b> -1.97 meter/day<br>"
                 "<b>inclination:</b> 98.7075°<br><b>ascendantNodeLongitude:</b> 344.178 °<br>"
                 "<b>ascendantNodeDrift:</b> -25.34°<br><b>orbitalPeriod:</b> 101.359 min");
    }

    void tenMebibytesMergeIntoTheirFewRows()
    {
        QByteArray satellites;
        while (satellites.size() < 10 * 1024 * 1024) {
            satellites += satellite("Name", QByteArray(1, static_cast<char>('A' + satellites.size() % 26))) + ',';
        }
        SatelliteAopModel model;
        QVERIFY(model.loadAopJson(document(satellites + satellite("Last", "Z"))));
        QVERIFY(model.rowCount() <= 26);
        QCOMPARE(model.satelliteNameForIdent('Z'), "Last");
    }

    void clearedListTakesSatellitesAnew()
    {
        SatelliteAopModel model;
        report(model, 'A');
        report(model, 'B');
        model.clear();
        QVERIFY(model.findByIdent('B') == nullptr);
        report(model, 'B');
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.findByIdent('B'), model.satelliteAt(0));
    }

    void readingWhatIsNotThereEndsTheProgram()
    {
        SatelliteAopModel model;
        report(model, 'A');
        const QModelIndex stale = model.index(0);
        verifyAborts("role", "src/models/SatelliteAopModel", "Invalid role value to access satellite AOP model data",
                     [&] { static_cast<void>(model.data(stale, Qt::DisplayRole)); });
        model.clear();
        verifyAborts("row", "src/models/SatelliteAopModel", "Invalid index to access satellite AOP model data",
                     [&] { static_cast<void>(model.data(stale, SatelliteAopModel::AopDataRole)); });
    }
};

QTEST_GUILESS_MAIN(SatelliteAopModelTest)
#include "tst_satelliteaopmodel.moc"
