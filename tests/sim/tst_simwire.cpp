// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SimSession.h"

namespace {

/// What is told to the console, then asked on the wire, and what comes on both. If neither, the port is opened anew.
struct Step
{
    QString told;
    QByteArray asked;
    QByteArray heard;
    int fromMs = 0; ///< after the requests: the last of it comes no sooner
    int reads = 0;  ///< the pieces in which it comes, if they matter
};
using Steps = QList<Step>;

} // namespace

// The simulated device as it is met at its port.
class TestSimWire : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deviceAnswersStepByStep_data()
    {
        QTest::addColumn<SimOptions>("options");
        QTest::addColumn<Steps>("steps");
        const auto row = [](const SimOptions &options, const char *name, const Steps &steps) {
            QTest::newRow(name) << options << steps;
        };
        const SimOptions zep2{.airtimeMs = airtimeMs};
        const SimOptions ranger{.board = Board::Ranger};
        row(zep2, "a repetition lengthens the airtime",
            {{"", "AT+ATXRP=2,1000", "+OK"}, {"", "AT+TX=A1B2C3D4", "+OK|+TX=0,A1B2C3D4", 1000 + airtimeMs}});
        row({.airtimeMs = 20, .latencyMs = 150}, "the result follows the answer, however late that is",
            {{"", "AT+TX=A1B2C3D4", "+OK|+TX=0,A1B2C3D4", 170}});
        row(zep2, "one message is in the air at a time",
            {{"", "AT+TX=00000001|AT+TX=00000002", "+OK|+ERROR=21|+TX=0,00000001"},
             {"", "AT+TX=00000003", "+OK|+TX=0,00000003"}});
        row(zep2, "a reply waits for a good message with an attribute",
            {{"rx-after C0FFEE|tx-error 1", "AT+TX=0001,0x4", "+OK|+TX=1,0001"},
             {"", "AT+TX=00000002", "+OK|+TX=0,00000002"},
             {"", "AT+TX=0003,0x4", "+OK|+TX=0,0003|+RX=C0FFEE"}});
        const QByteArray rest = QByteArray("+TXFIFO=0,00000002,0x0|").repeated(7);
        row(zep2, "the queue holds eight and keeps their order",
            {{"", "AT+TXDATA=00000001" + QByteArray("|AT+TXDATA=00000002").repeated(8),
              QByteArray("+OK|").repeated(8) + "+ERROR=21"},
             {"tx-error 3", "AT+ATXSTART=", "+OK|+TX=3,00000001"}, // and it waits on
             {"", "AT+ATXSTART=|AT+TXFIFO=?", "+OK|+TXFIFO=0,00000001,0x0|" + rest + "+TXFIFO=end|+TX=0,00000001"},
             {"", "AT+TXDATA=AAAA,0x1|AT+TXFIFO=?", "+OK|" + rest + "+TXFIFO=0,AAAA,0x1|+TXFIFO=end"}});
        // Its clock is set to where something is to happen; a pass is of use from its second second on.
        const auto at = [](const char *time) { return QByteArray("AT+UDATE=2031-01-01T00:") + time + 'Z'; };
        row({.board = Board::Tbx, .airtimeMs = airtimeMs}, "the queue goes out in a pass only",
            {{"forget-bulletins", at("00:00") + "|AT+ATXRP=4,60000|AT+TXDATA=00000001", "+OK|+OK|+OK"},
             {"pass 10 30|late 350", at("00:20"), "+OK"}, // the prediction is off
             {"", at("00:00") + "|AT+PREPASS_EN=1|AT+NEXTPASS=?",
              "+OK|+OK|+NEXTPASS=3,2031-1-1T0:0:10Z,2031-1-1T0:0:40Z,30,45"},
             // The repetitions that do not fit into the pass are left out.
             {"pass 50 10", at("00:52"), "+OK|+TX=0,00000001"}});
        row(zep2, "an answer is late or split once, and holds up the next",
            {{"late 300", "AT+PING=?|AT+RST=?", "+OK|+ERROR=4", 300},
             {"split", "AT+PING=?", "+OK", 50, 2},
             {"", "AT+PING=?", "+OK", 0, 1}});
        row(zep2, "an order waits for its request",
            {{"when AT+POS mute 1|when AT+POS say +RX=00", "AT+PING=?|AT+POS=1,1|AT+POS=?",
              "+OK|+RX=00|+POS=43.5495,1.4849"},
             {"when AT+POS unplug|when AT+POS plug", "AT+POS=?", ""},
             {"unplug|plug", "AT+POS=?", "+POS=43.5495,1.4849"}});
        row(ranger, "a ranger hears nothing until its button is pushed",
            {{"", "AT+ID=?", ""},
             {"wake", "AT+PING=?", "RANGER -- BUTTON PUSHED|+OK"},
             {"sleep", "AT+ID=?", "RANGER -- SLEEP"}});
        row({.board = Board::Ranger, .autoWakeMs = 100}, "a ranger wakes up for each client that opens the port",
            {{"", "", "RANGER -- BUTTON PUSHED", 90}, {"", "", "RANGER -- BUTTON PUSHED", 90}});
        row(ranger, "a setting of a ranger lasts only from its restart on",
            {{"wake", "AT+PACQ=120|AT+PACQ=?|AT+RST=|AT+PING=?", // the last one is not heard
              "RANGER -- BUTTON PUSHED|+OK|+PACQ=120|+OK|RANGER -- PARAMETERS RESTORED"},
             {"", "AT+PACQ=240", "+OK"},
             {"assert stuck", "", "+ASSERT=stuck|RANGER -- PARAMETERS RESTORED"},
             {"", "AT+PACQ=?|AT+PACQ=240", "+PACQ=120|+OK"},
             {"unplug|plug|wake", "AT+PACQ=?", "RANGER -- BUTTON PUSHED|+PACQ=120"}});
    }

    void deviceAnswersStepByStep()
    {
        QFETCH(SimOptions, options);
        QFETCH(Steps, steps);
        SimSession sim(options);
        const SimDevice &device = sim.simulator->device();
        QSignalSpy requests(sim.simulator.get(), &Simulator::requestReceived);
        for (const Step &step : qAsConst(steps)) {
            QCOMPARE(sim.tell(step.told), "ok");
            if (step.told.contains("plug") || (step.told + step.asked).isEmpty()) {
                sim.open();
            }
            if (!step.asked.isEmpty()) {
                QVERIFY(QTest::qWaitFor([&] { return device.canSleep() || device.isListening(); }));
                requests.clear();
                sim.client->reads = 0;
                sim.client->send(QByteArray(step.asked).replace("|", "\r\n") + "\r\n");
                QVERIFY(QTest::qWaitFor([&] { return requests.size() == step.asked.count('|') + 1; }));
            }
            QCOMPARE(sim.client->hear(step.heard.isEmpty() ? 0 : step.heard.count('|') + 1), step.heard);
            const qint64 lateMs = sim.client->lastReadMs - step.fromMs;
            QVERIFY2(lateMs >= 0, qPrintable(QString::number(lateMs)));
            QVERIFY(step.reads == 0 || sim.client->reads == step.reads);
        }
    }

    void baudPaceSpacesTheBytes()
    {
        SimSession sim(SimOptions{.baudPace = true});
        const QByteArray heard = sim.client->ask("AT+AOP=?", 6);
        QVERIFY2(heard.endsWith("+AOP=end"), heard);
        const qint64 wireMs = heard.size() * 10 * 1000 / 9600;
        QVERIFY(sim.client->lastReadMs >= wireMs);
        QVERIFY(sim.client->reads > 2);
    }

    void requestsAreCutFromAnyPieces()
    {
        SimSession sim;
        sim.client->send("AT+PI");
        sim.client->send("NG=?\r\n\r\nAT+PING=?\nAT+PING=?\r");
        QCOMPARE(sim.client->hear(3), "+OK|+OK|+OK");
        QCOMPARE(sim.client->ask("AT+TX=" + QByteArray(3000, '0') + "|AT+PING=?", 2), "+ERROR=2|+OK");
        QCOMPARE(sim.tell("garbage 50"), "ok"); // which is no text
        QCOMPARE(QString::fromUtf8(sim.client->hear(1)), QString(50, QChar::ReplacementCharacter));
    }

    void unpluggedPortHangsUpAndComesBackByItsLink()
    {
        SimSession sim;
        QCOMPARE(sim.client->ask("AT+POS=1,2|AT+TX=00000001", 2), "+OK|+OK");
        QCOMPARE(sim.tell("unplug"), "ok");
        QVERIFY(QTest::qWaitFor([&] { return sim.client->hungUp; }));
        QVERIFY(!QFileInfo(sim.link).isSymLink());
        QCOMPARE(sim.tell("rx 00|plug"), "ok"); // the message is heard by nobody
        sim.open();                             // settings stay, what was in the air does not
        QCOMPARE(sim.client->ask("AT+POS=?|AT+TX=00000002", 3), "+POS=1,2|+OK|+TX=0,00000002");
        sim.simulator.reset();
        QVERIFY2(!QFileInfo(sim.link).isSymLink(), "the link outlives the simulator");

        QFile foreign(sim.link); // is not replaced
        QVERIFY(foreign.open(QIODevice::WriteOnly));
        QVERIFY(!Simulator(SimOptions{.link = sim.link}).start());
        QVERIFY(foreign.exists());
    }
};

QTEST_GUILESS_MAIN(TestSimWire)
#include "tst_simwire.moc"
