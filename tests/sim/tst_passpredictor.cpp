// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PassPredictor.h"

#include <QTest>

#include <array>

namespace {

/// Start and end in minutes from noon, elevation, azimuths of start and end in degrees.
using Expected = std::array<double, 5>;
constexpr Expected none{};

const QDateTime noon(QDate(2026, 3, 20), QTime(12, 0), Qt::UTC);

// Two Earth radii from the centre, once round in four hours. From there the horizon of a place is the circle 60
// degrees round it, as the cosine of 60 degrees is a half: one third of a turn, 80 minutes, if it comes overhead.
Orbit highOrbit(double inclination, double nodeLongitude = 0, double nodeDrift = 0)
{
    return {noon, nodeLongitude, nodeDrift, 240, inclination, 2 * 6371.0};
}

PassCriteria from(double latitude, double longitude = 0, double minElevation = 0)
{
    return {.latitude = latitude, .longitude = longitude, .minElevation = minElevation};
}

QList<Pass> passes(const Orbit &orbit, const PassCriteria &criteria, int hours)
{
    const PassPredictor predictor(orbit, criteria);
    const QDateTime until = noon.addSecs(hours * 3600LL);
    QList<Pass> list;
    for (auto pass = predictor.nextPass(noon, until); pass; pass = predictor.nextPass(list.last().end, until)) {
        list += *pass;
    }
    return list;
}

} // namespace

// Against cases that were worked out by hand. Expected times may be a second off: passes are cut to whole seconds.
class TestPassPredictor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyPassIsWhereAndWhenGeometryHasIt_data()
    {
        QTest::addColumn<Orbit>("orbit");
        QTest::addColumn<PassCriteria>("criteria");
        QTest::addColumn<Expected>("expected");
        const auto row = [](const char *name, const Orbit &orbit, const PassCriteria &criteria,
                            const Expected &expected = none) { QTest::newRow(name) << orbit << criteria << expected; };
        row("equatorial orbit, just beyond the horizon", highOrbit(0, 0, -60), from(60.1));
        // of 4800 s; of 36.206 degrees, see below
        row("no pass lasts so long", highOrbit(0), {.minDurationSeconds = 4810});
        row("all passes are higher", highOrbit(0), {.latitude = 30, .maxElevation = 36});
        // date, node's longitude and drift, period, inclination, radius
        row("in the ground", {noon, 0, 0, 240, 90, 6000}, from(90));
        row("without a period", {noon, 0, 0, 0, 90, 12742}, from(90));
        row("faster than can be", {noon, 0, 0, 1e-6, 90, 12742}, from(90));
        row("without a date", {{}, 0, 0, 240, 90, 12742}, from(90));
        // Overhead after a quarter of a turn; over the north pole all ways lead south, from 0 E on to 180 E.
        row("pole", highOrbit(90), from(90), {20, 100, 90, 180, 0});
        // It comes 90 degrees from the west at 360 degrees in 240 minutes.
        row("the date line", highOrbit(0, 90), from(0, -180), {20, 100, 90, 270, 90});
        // At 30 degrees of elevation it is acos(cos(30)/2) - 30 = 34.341 degrees away: 22.894 minutes.
        row("elevation", highOrbit(90), from(90, 0, 30), {37.106, 82.894, 90, 180, 0});
        // 30 degrees beside the track, atan((cos(30) - 1/2) / sin(30)) high; acos(cos(60)/cos(30)) = 54.736 degrees of
        // the track on either side, and there the azimuth is acos(cos(60) tan(30) / sin(60)) = 70.529 degrees.
        row("beside the track", highOrbit(0, -90), from(30),
            {60 - 36.490, 60 + 36.490, 36.206, 360 - 109.471, 109.471});
        // Against the Earth's turn the node comes back by 90 degrees a revolution: only 270 are won in 240 minutes.
        row("drift", highOrbit(0, -90, -90), from(0), {26.667, 133.333, 90, 270, 90});
    }

    void onlyPassIsWhereAndWhenGeometryHasIt()
    {
        QFETCH(Orbit, orbit);
        QFETCH(PassCriteria, criteria);
        QFETCH(Expected, expected);
        if (expected == none) {
            QCOMPARE(passes(orbit, criteria, 24 * 30).size(), 0);
            QVERIFY(!PassPredictor(orbit, criteria).passAt(noon.addSecs(4 * 3600LL)));
            return;
        }
        const QList<Pass> found = passes(orbit, criteria, 4);
        QCOMPARE(found.size(), 1);
        const Pass &pass = found.first();
        const Expected values{double(noon.secsTo(pass.start)) / 60, double(noon.secsTo(pass.end)) / 60,
                              pass.middleElevation, pass.startAzimuth, pass.endAzimuth};
        const Expected tolerances{0.02, 0.02, 0.05, 0.1, 0.1};
        for (size_t i = 0; i < values.size(); ++i) {
            QVERIFY2(qAbs(std::remainder(values[i] - expected[i], 360)) <= tolerances[i],
                     qPrintable(QStringLiteral("value %1 is %2").arg(i).arg(values[i])));
        }
    }

    void runningPassIsFoundFromAllItsParts()
    {
        const PassPredictor predictor(highOrbit(98, 10, -60), from(43.5, 1.5, 5));
        const auto pass = predictor.nextPass(noon, noon.addDays(1));
        QVERIFY(pass && pass->durationSeconds() > 600);
        for (const QDateTime &date : {pass->start, pass->middle(), pass->end}) {
            const auto found = predictor.passAt(date);
            QVERIFY(found && found->start == pass->start && found->end == pass->end);
        }
        QVERIFY(!predictor.passAt(pass->start.addSecs(-1)) && !predictor.passAt(pass->end.addSecs(1)));
        QVERIFY2(predictor.nextPass(pass->start.addSecs(1), noon.addDays(2))->start > pass->end,
                 "a running pass is next");
        QVERIFY(!predictor.nextPass(noon, pass->start.addSecs(-1)) && predictor.nextPass(noon, pass->start));
    }

    void freshBulletinKeepsThePasses()
    {
        const Orbit old{noon.addDays(-200), 204.118, -23.7431, 94.9021, 97.4612, 6891.72};
        const Orbit fresh = old.asOf(noon);
        QVERIFY(fresh.nodeDate <= noon && fresh.nodeDate > noon.addSecs(-95 * 60LL));
        const QList<Pass> expected = passes(old, from(43.5, 1.5, 5), 72);
        const QList<Pass> found = passes(fresh, from(43.5, 1.5, 5), 72);
        QCOMPARE(found.size(), expected.size());
        QVERIFY(expected.size() > 6 && qAbs(expected.last().start.secsTo(found.last().start)) <= 1);
    }
};

QTEST_GUILESS_MAIN(TestPassPredictor)
#include "tst_passpredictor.moc"
