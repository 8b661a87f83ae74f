// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QSignalSpy>

#include "Aborts.h"
#include "Criticals.h"
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
              "inclination": 98.7, "ascendantNodeLongitude": 344.2, "ascendantNodeDrift": -25.3, "orbitalPeriod": 1e3}})";
}

/// What the module says of a satellite.
void report(SatelliteAopModel &model, QChar ident)
{
    model.updateOrAddSatellite(ident, QDateTime(QDate(2025, 1, 1), QTime(0, 0), Qt::UTC), 1, 2, 3, 4, 5, 6, "NA",
                               SatelliteAop::DNLK_NA, SatelliteAop::UPLK_NA);
}

/// Name, statuses and bulletin of a row.
QString all(const SatelliteAopModel &model, uchar row)
{
    const SatelliteAop *read = model.satelliteAt(row);
    return (QStringList{read->satelliteName} + read->statusAtParameters() + read->aopAtParameters()).join(',');
}
} // namespace

class SatelliteAopModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnCritical(); }

    void rejectedDocumentChangesNothing()
    {
        const QByteArray fresh = document(satellite("New", "B"));
        SatelliteAopModel model;
        QVERIFY(model.loadAopJson(document(satellite("Old", "A"))));
        QSignalSpy created(&model, &SatelliteAopModel::creationDateChanged);
        for (const auto &[rejected, message] :
             {std::pair(QByteArray("[]"), "^AOP data error \\(no consistent object\\)$"),
              {QByteArray(fresh).replace(0, 1, "{\"errors\": null, "), "^AOP data error \\(no consistent object\\)$"},
              {fresh.chopped(1), "^Error: [a-z]+"},
              {QByteArray(fresh).replace("7195.6545", "NaN"), "^Error: [a-z]+"},
              {QByteArray(1000000, '['), "^Error: [a-z]+"}}) {
            expectCritical(QRegularExpression(message));
            QVERIFY2(!model.loadAopJson(rejected), rejected.left(100));
        }
        QCOMPARE(created.count(), 0);
        QCOMPARE(model.creationDate(), "Wed Jan 7 10:00:00 2026 GMT (UTC)");
        QVERIFY(model.rowCount() == 1 && all(model, 0).startsWith("Old,"));
    }

    void whatCannotBeReadIsZeroOrEmpty()
    {
        const QByteArray types = R"({"satellite": {}, "aop": [1], "broadcastedStatus":
                                     {"fleetfeedIdent": "axy", "downlinkStatus": [], "operatingStatus": 3}})";
        for (const auto &[element, read] :
             {std::pair(types, ",A,0,0,A,,0,0,0,0,0,0"),
              {satellite("S", "A").replace("7195.6545", "true").replace("-1.97", "null").replace("98.7", "{}"),
               "S,A,2,3,A,2026-01-06T22:58:17Z,0,0,344.2,-25.3,1000,0"},
              {satellite("S", "a").replace("7195.6545", "\"NaN\"").replace("01-06", "02-30"),
               "S,A,2,3,A,,0,98.7,344.2,-25.3,1000,-1.97"},
              {satellite("S", "A", "HELIO-4 TX ON", "HELIO-4 payload").replace("7195.6545", "1e9"),
               "S,A,1,2,A,2026-01-06T22:58:17Z,1000000000,98.7,344.2,-25.3,1000,-1.97"},
              {satellite("S", "A", "HELIO-3 TX ON", "HELIO-Mirel payload").replace("7195.6545", "1e9"),
               "S,A,3,1,A,2026-01-06T22:58:17Z,1000000000,98.7,344.2,-25.3,1000,-1.97"},
              {satellite("S", "A", "helio-4 TX ON", "OUT OF SERVICE "),
               "S,A,0,0,A,2026-01-06T22:58:17Z,7195.65,98.7,344.2,-25.3,1000,-1.97"}}) {
            SatelliteAopModel model;
            expectCritical("Satellites without a fleetfeedIdent in AOP data, skipped: 5");
            QVERIFY(model.loadAopJson(document(R"({}, 7, {"broadcastedStatus": {"fleetfeedIdent": 5}},
                                                   {"broadcastedStatus": ["A"]}, )" +
                                               satellite("no ident", "") + ", " + element)));
            QCOMPARE(model.rowCount(), 1);
            QCOMPARE(all(model, 0), read);
            QSignalSpy created(&model, &SatelliteAopModel::creationDateChanged);
            QVERIFY(model.loadAopJson(R"({"creationDate": 5, "satellitesInformation": {}})"));
            QCOMPARE(created.count(), 1);
            QCOMPARE(model.creationDate(), " (UTC)");
            QCOMPARE(all(model, 0), read);
        }
    }

    void sourcesMergeInEitherOrder()
    {
        SatelliteAopModel model;
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        const auto text = [&](int role) { return model.data(model.index(0), role).toString(); };
        report(model, 'A');
        QCOMPARE(text(SatelliteAopModel::UplinkStatusRole), "");
        QCOMPARE(model.getDownlinkCapability("NA"), "ON"); // not known, and taken for on

        QVERIFY(model.loadAopJson(document(satellite("B", "B", "Downlink transmitter OFF") + ", " +
                                           satellite("Old", "a") + ", " + satellite("New", "A", "HELIO-4 TX ON"))));
        QCOMPARE(text(SatelliteAopModel::SatelliteNameRole), "New");       // in the row of its ident
        QCOMPARE(text(SatelliteAopModel::DownlinkStatusRole), "HELIO-4 "); // with its blank
        QCOMPARE(text(SatelliteAopModel::UplinkStatusRole), "OFF");
        QVERIFY(model.isModuleSatellite('a') && !model.isModuleSatellite('B'));

        report(model, 'B');
        QCOMPARE(all(model, 1), "B,B,0,3,B,2025-01-01T00:00:00Z,1,2,3,4,5,6");
        model.updateOrAddSatellite('B', {}, 0, 0, 0, 0, 0, 0, "C", SatelliteAop::DNLK_HELIO_3_ON,
                                   SatelliteAop::UPLK_NA);
        QCOMPARE(all(model, 1), "C,B,0,3,B,,0,0,0,0,0,0"); // half known is not known
        QCOMPARE(model.getDownlinkCapability("C") + model.getDownlinkCapability("c"), "OFFNA");
        QCOMPARE(model.satelliteNameForIdent('b'), "C");
        QVERIFY(model.isModuleSatellite('B') && model.findByIdent('b') == nullptr);
        QVERIFY(inserted.count() == 2 && changed.count() == 6);
        verifyBounds(model, "src/models/SatelliteAopModel", "satellite AOP");
        model.clear();
        QVERIFY(model.rowCount() == 0 && model.findByIdent('A') == nullptr);
    }

    void tooltipHasItsUnevenDegreesAndNoForeignMarkup()
    {
        SatelliteAopModel model;
        QVERIFY(model.loadAopJson(document(satellite("S", "<"))));
        QCOMPARE(model.data(model.index(0), SatelliteAopModel::AopDataRole),
                 "<b>fleetfeedIdent:</b> &lt;<br><b>date:</b> Tue Jan 6 22:58:17 2026 GMT<br>"
                 "<b>semiMajorAxis:</b> 7195.65 km<br><b>semiMajorAxisDrift:</b> -1.97 meter/day<br>"
                 "<b>inclination:</b> 98.7°<br><b>ascendantNodeLongitude:</b> 344.2 °<br>"
                 "<b>ascendantNodeDrift:</b> -25.3°<br><b>orbitalPeriod:</b> 1000 min");
    }
};

QTEST_GUILESS_MAIN(SatelliteAopModelTest)
#include "tst_satelliteaopmodel.moc"
