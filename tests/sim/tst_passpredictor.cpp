// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PassPredictor.h"

#include <QTest>

namespace {

const QDateTime noon(QDate(2026, 3, 20), QTime(12, 0), Qt::UTC);

// Two Earth radii from the centre, once round in four hours. From there the horizon of a place is the circle 60
// degrees round it, as the cosine of 60 degrees is a half: one third of a turn, 80 minutes, if it comes overhead.
Orbit highOrbit(double inclination, double nodeLongitude = 0, double nodeDrift = 0)
{
    return {noon, nodeLongitude, nodeDrift, 240, inclination, 2 * 6371.0};
}

PassCriteria from(double latitude, double longitude = 0, double minElevation = 0)
{
    PassCriteria criteria;
    criteria.latitude = latitude;
    criteria.longitude = longitude;
    criteria.minElevation = minElevation;
    return criteria;
}

QList<Pass> passes(const Orbit &orbit, const PassCriteria &criteria, int hours)
{
    const PassPredictor predictor(orbit, criteria);
    const QDateTime until = noon.addSecs(hours * 3600);
    QList<Pass> list;
    for (auto pass = predictor.nextPass(noon, until); pass; pass = predictor.nextPass(list.last().end, until)) {
        list += *pass;
    }
    return list;
}

double minutes(const QDateTime &date)
{
    return double(noon.secsTo(date)) / 60;
}

} // namespace

// Against cases that were worked out by hand. Expected times may be a second off: passes are cut to whole seconds.
class TestPassPredictor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNotSeenNeverRises_data();
    void whatIsNotSeenNeverRises();
    void firstPassIsWhereAndWhenGeometryHasIt_data();
    void firstPassIsWhereAndWhenGeometryHasIt();
    void polarOrbitRisesAtThePoleEveryRevolution();
    void runningPassIsFoundFromAllItsParts();
    void freshBulletinKeepsThePasses();
};

void TestPassPredictor::whatIsNotSeenNeverRises_data()
{
    QTest::addColumn<Orbit>("orbit");
    QTest::addColumn<PassCriteria>("criteria");
    const auto spoilt = [](double Orbit::*field, double value) {
        Orbit orbit = highOrbit(90);
        orbit.*field = value;
        return orbit;
    };
    Orbit undated = highOrbit(90);
    undated.nodeDate = {};
    QTest::newRow("equatorial orbit from the pole") << highOrbit(0) << from(90);
    QTest::newRow("equatorial orbit, just beyond the horizon") << highOrbit(0, 0, -60) << from(60.1);
    QTest::newRow("no satellite is higher than overhead") << highOrbit(0) << from(20, 0, 89);
    PassCriteria longPasses = from(0);
    longPasses.minDurationSeconds = 4810; // of 4800
    PassCriteria lowPasses = from(30);
    lowPasses.maxElevation = 36; // of 36.206, see below
    QTest::newRow("no pass lasts so long") << highOrbit(0) << longPasses;
    QTest::newRow("all passes are higher") << highOrbit(0) << lowPasses;
    QTest::newRow("in the ground") << spoilt(&Orbit::semiMajorAxis, 6000) << from(90);
    QTest::newRow("without a radius") << spoilt(&Orbit::semiMajorAxis, 0) << from(90);
    QTest::newRow("without a period") << spoilt(&Orbit::periodMinutes, 0) << from(90);
    QTest::newRow("faster than can be") << spoilt(&Orbit::periodMinutes, 1e-6) << from(90);
    QTest::newRow("without a date") << undated << from(90);
}

void TestPassPredictor::whatIsNotSeenNeverRises()
{
    QFETCH(Orbit, orbit);
    QFETCH(PassCriteria, criteria);
    QCOMPARE(passes(orbit, criteria, 24 * 30).size(), 0);
    QVERIFY(!PassPredictor(orbit, criteria).passAt(noon.addSecs(4 * 3600)));
}

void TestPassPredictor::firstPassIsWhereAndWhenGeometryHasIt_data()
{
    QTest::addColumn<Orbit>("orbit");
    QTest::addColumn<PassCriteria>("criteria");
    QTest::addColumn<double>("start"); // minutes from noon
    QTest::addColumn<double>("end");
    QTest::addColumn<double>("elevation");
    QTest::addColumn<double>("startAzimuth");
    QTest::addColumn<double>("endAzimuth");
    // Overhead after a quarter of a turn; over the north pole all ways lead south, from 0 E on to 180 E.
    QTest::newRow("pole") << highOrbit(90) << from(90) << 20.0 << 100.0 << 90.0 << 180.0 << 0.0;
    QTest::newRow("south pole, half a turn later")
        << highOrbit(90) << from(-90) << 140.0 << 220.0 << 90.0 << 180.0 << 0.0;
    // It comes 90 degrees from the west at 360 degrees in 240 minutes.
    QTest::newRow("equator") << highOrbit(0, -90) << from(0) << 20.0 << 100.0 << 90.0 << 270.0 << 90.0;
    QTest::newRow("retrograde") << highOrbit(180, 90) << from(0) << 20.0 << 100.0 << 90.0 << 90.0 << 270.0;
    QTest::newRow("the date line") << highOrbit(0, 90) << from(0, -180) << 20.0 << 100.0 << 90.0 << 270.0 << 90.0;
    // At 30 degrees of elevation it is acos(cos(30)/2) - 30 = 34.341 degrees away: 22.894 minutes.
    QTest::newRow("elevation") << highOrbit(90) << from(90, 0, 30) << 37.106 << 82.894 << 90.0 << 180.0 << 0.0;
    // 30 degrees beside the track, atan((cos(30) - 1/2) / sin(30)) high; acos(cos(60)/cos(30)) = 54.736 degrees of
    // the track on either side, and there the azimuth is acos(cos(60) tan(30) / sin(60)) = 70.529 degrees from north.
    QTest::newRow("beside the track") << highOrbit(0, -90) << from(30) << 60 - 36.490 << 60 + 36.490 << 36.206
                                      << 360 - 109.471 << 109.471;
    // Against the Earth's turn the node comes back by 90 degrees a revolution: only 270 are won in 240 minutes.
    QTest::newRow("drift") << highOrbit(0, -90, -90) << from(0) << 26.667 << 133.333 << 90.0 << 270.0 << 90.0;
}

void TestPassPredictor::firstPassIsWhereAndWhenGeometryHasIt()
{
    QFETCH(Orbit, orbit);
    QFETCH(PassCriteria, criteria);
    QFETCH(double, start);
    QFETCH(double, end);
    QFETCH(double, elevation);
    QFETCH(double, startAzimuth);
    QFETCH(double, endAzimuth);
    const QList<Pass> found = passes(orbit, criteria, 4);
    QCOMPARE(found.size(), 1);
    const Pass &pass = found.first();
    const auto isNear = [](double value, double expected, double tolerance) {
        return qAbs(std::remainder(value - expected, 360)) <= tolerance;
    };
    QVERIFY2(isNear(minutes(pass.start), start, 0.02), qPrintable(pass.start.toString()));
    QVERIFY2(isNear(minutes(pass.end), end, 0.02), qPrintable(pass.end.toString()));
    QVERIFY2(isNear(pass.middleElevation, elevation, 0.05), qPrintable(QString::number(pass.middleElevation)));
    QVERIFY2(isNear(pass.startAzimuth, startAzimuth, 0.1), qPrintable(QString::number(pass.startAzimuth)));
    QVERIFY2(isNear(pass.endAzimuth, endAzimuth, 0.1), qPrintable(QString::number(pass.endAzimuth)));
}

void TestPassPredictor::polarOrbitRisesAtThePoleEveryRevolution()
{
    Orbit orbit = highOrbit(90, 77, -60);
    QCOMPARE(passes(orbit, from(90), 240).size(), 60);
    orbit.periodMinutes *= 2;
    QCOMPARE(passes(orbit, from(90), 240).size(), 30);
}

void TestPassPredictor::runningPassIsFoundFromAllItsParts()
{
    const PassPredictor predictor(highOrbit(98, 10, -60), from(43.5, 1.5, 5));
    const auto pass = predictor.nextPass(noon, noon.addDays(1));
    QVERIFY(pass && pass->durationSeconds() > 600);
    for (int second = 0; second <= pass->durationSeconds(); second += 97) {
        const auto found = predictor.passAt(pass->start.addSecs(second));
        QVERIFY(found);
        QCOMPARE(found->start, pass->start);
        QCOMPARE(found->end, pass->end);
    }
    QVERIFY(!predictor.passAt(pass->start.addSecs(-1)));
    QVERIFY(!predictor.passAt(pass->end.addSecs(1)));
    QVERIFY2(predictor.nextPass(pass->start.addSecs(1), noon.addDays(2))->start > pass->end, "a running pass is next");
    QVERIFY(!predictor.nextPass(noon, pass->start.addSecs(-1)));
    QCOMPARE(predictor.nextPass(noon, pass->start)->start, pass->start);
}

void TestPassPredictor::freshBulletinKeepsThePasses()
{
    const Orbit old{noon.addDays(-200), 204.118, -23.7431, 94.9021, 97.4612, 6891.72};
    const Orbit fresh = old.asOf(noon);
    QVERIFY(fresh.nodeDate <= noon && fresh.nodeDate > noon.addSecs(-95 * 60));
    const QList<Pass> expected = passes(old, from(43.5, 1.5, 5), 72);
    const QList<Pass> found = passes(fresh, from(43.5, 1.5, 5), 72);
    QVERIFY(expected.size() > 6);
    QCOMPARE(found.size(), expected.size());
    for (qsizetype i = 0; i < expected.size(); ++i) {
        QVERIFY(qAbs(expected.at(i).start.secsTo(found.at(i).start)) <= 1);
    }
}

QTEST_GUILESS_MAIN(TestPassPredictor)
#include "tst_passpredictor.moc"
