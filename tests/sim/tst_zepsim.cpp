// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Options.h"
#include "SimDevice.h"
#include "Simulator.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QSignalSpy>
#include <QSocketNotifier>
#include <QStringDecoder>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace {

/// What has a port open: bare reads and writes, nothing of the program's own serial code.
class Client
{
public:
    explicit Client(const QString &path)
        : m_descriptor(::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK))
        , m_notifier(m_descriptor, QSocketNotifier::Read)
    {
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { read(); });
        m_clock.start();
    }
    ~Client()
    {
        m_notifier.setEnabled(false);
        ::close(m_descriptor);
    }
    void send(const QByteArray &text)
    {
        m_clock.restart();
        QCOMPARE(::write(m_descriptor, text.constData(), size_t(text.size())), ssize_t(text.size()));
    }
    void ask(const QByteArray &request) { send(request + "\r\n"); }

    QByteArray bytes;      ///< all that came
    int reads = 0;         ///< the pieces in which it came
    qint64 lastReadMs = 0; ///< from the last send to the last piece
    bool hungUp = false;

private:
    void read()
    {
        std::array<char, 4096> buffer;
        const ssize_t count = ::read(m_descriptor, buffer.data(), buffer.size());
        if (count <= 0) {
            hungUp = true;
            m_notifier.setEnabled(false);
            return;
        }
        bytes.append(buffer.data(), count);
        ++reads;
        lastReadMs = m_clock.elapsed();
    }

    int m_descriptor;
    QSocketNotifier m_notifier;
    QElapsedTimer m_clock;
};

constexpr int airtimeMs = 200;

} // namespace

// The simulator as its clients see it: through the port, the console and, at the end, the program.
class TestZepsim : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void resultFollowsTheAnswerAfterTheAirtime_data();
    void resultFollowsTheAnswerAfterTheAirtime();
    void oneMessageIsInTheAirAtATime();
    void replyWaitsForAGoodMessageWithAnAttribute();
    void repetitionsLengthenTheAirtime();
    void queueHoldsEightAndKeepsTheirOrder();
    void queueGoesOutInAPassOnly();
    void whatWaitsWhenAPassBeginsGoesOutInItUnlessSkipped();
    void flushCancelsWhatIsInTheAir();

    void lateAnswerHoldsUpTheNext();
    void mutedAndSpoiltRequestsAreCounted();
    void splitAnswerComesInTwoReads();
    void baudPaceSpacesTheBytes();
    void requestsAreCutFromAnyPieces();
    void overlongRequestIsOneError();
    void garbageIsNoText();

    void unpluggedPortHangsUpAndComesBackByItsLink();
    void foreignFileIsNotReplacedByTheLink();
    void rangerHearsNothingUntilItsButtonIsPushed();
    void rangerWakesUpForEachClientThatOpensThePort();
    void settingOfARangerLastsOnlyFromItsRestartOn();
    void rangerFailsInTheMiddleOfItsConfiguration();
    void assertionEndsTheTransmission();

    void bulletinsAreServedWithTheFaultAskedFor_data();
    void bulletinsAreServedWithTheFaultAskedFor();
    void passTableIsThatOfTheDevice();
    void badConsoleLineIsRefused_data();
    void badConsoleLineIsRefused();
    void consoleIsReachableBySocketOnce();
    void commandLineIsReadOrRefused_data();
    void commandLineIsReadOrRefused();
    void programEndsCleanlyBySignalOnly();

private:
    void startOn(Board board);
    void startWith(const SimOptions &options);
    QString execute(const QString &line) { return m_simulator->execute(line); }
    QString linkPath() const { return m_dir->filePath("port"); }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<Simulator> m_simulator;
    std::unique_ptr<Client> m_client;
};

void TestZepsim::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

void TestZepsim::cleanup()
{
    m_client.reset();
    m_simulator.reset();
    QVERIFY2(!QFileInfo(linkPath()).isSymLink(), "the link outlives the simulator");
}

void TestZepsim::startOn(Board board)
{
    SimOptions options;
    options.board = board;
    options.airtimeMs = airtimeMs;
    startWith(options);
}

void TestZepsim::startWith(const SimOptions &options)
{
    SimOptions linked = options;
    linked.link = linkPath();
    m_simulator = std::make_unique<Simulator>(linked);
    QVERIFY2(m_simulator->start(), qPrintable(m_simulator->errorString()));
    m_client = std::make_unique<Client>(linkPath());
}

void TestZepsim::resultFollowsTheAnswerAfterTheAirtime_data()
{
    QTest::addColumn<Board>("board");
    QTest::addColumn<int>("latencyMs");
    QTest::addColumn<int>("airMs");
    QTest::newRow("zep1") << Board::Zep1 << 0 << 200;
    QTest::newRow("zep2") << Board::Zep2 << 0 << 200;
    QTest::newRow("tbx, no airtime") << Board::Tbx << 0 << 0;
    QTest::newRow("latency above the airtime") << Board::Zep2 << 150 << 20;
}

void TestZepsim::resultFollowsTheAnswerAfterTheAirtime()
{
    QFETCH(Board, board);
    QFETCH(int, latencyMs);
    QFETCH(int, airMs);
    SimOptions options;
    options.board = board;
    options.latencyMs = latencyMs;
    options.airtimeMs = airMs;
    startWith(options);
    m_client->ask("AT+TX=A1B2C3D4");
    QTRY_COMPARE(m_client->bytes.left(5), "+OK\r\n");
    QVERIFY2(m_client->lastReadMs >= latencyMs, "the answer came before the latency was over");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+TX=0,A1B2C3D4\r\n");
    QVERIFY2(m_client->lastReadMs >= latencyMs + airMs, qPrintable(QString::number(m_client->lastReadMs)));
    QVERIFY2(m_client->lastReadMs < latencyMs + airMs + 1000, qPrintable(QString::number(m_client->lastReadMs)));
}

void TestZepsim::oneMessageIsInTheAirAtATime()
{
    startOn(Board::Zep2);
    m_client->send("AT+TX=00000001\r\nAT+TX=00000002\r\n");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+ERROR=21\r\n+TX=0,00000001\r\n");
    m_client->ask("AT+TX=00000003");
    QTRY_VERIFY(m_client->bytes.endsWith("+OK\r\n+TX=0,00000003\r\n"));
}

void TestZepsim::replyWaitsForAGoodMessageWithAnAttribute()
{
    startOn(Board::Zep2);
    QCOMPARE(execute("rx-after C0FFEE"), QStringLiteral("ok"));
    QCOMPARE(execute("tx-error 1"), QStringLiteral("ok"));
    m_client->ask("AT+TX=0001,0x4");
    QTRY_VERIFY(m_client->bytes.endsWith("+TX=1,0001\r\n"));
    m_client->ask("AT+TX=00000002");
    QTRY_VERIFY(m_client->bytes.endsWith("+TX=0,00000002\r\n"));
    m_client->ask("AT+TX=0003,0x4");
    QTRY_VERIFY(m_client->bytes.endsWith("+TX=0,0003\r\n+RX=C0FFEE\r\n"));
    QCOMPARE(m_client->bytes.count("+RX"), 1);
    // and what needs no message
    QCOMPARE(execute("rx 01"), QStringLiteral("ok"));
    QCOMPARE(execute("bc 02"), QStringLiteral("ok"));
    QTRY_VERIFY(m_client->bytes.endsWith("+RX=01\r\n+BC=02\r\n"));
}

void TestZepsim::repetitionsLengthenTheAirtime()
{
    startOn(Board::Zep2);
    m_client->ask("AT+ATXRP=2,1000");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n");
    m_client->ask("AT+TX=00000001");
    QTRY_VERIFY(m_client->bytes.endsWith("+TX=0,00000001\r\n"));
    QVERIFY2(m_client->lastReadMs >= 1000 + airtimeMs, qPrintable(QString::number(m_client->lastReadMs)));
}

void TestZepsim::queueHoldsEightAndKeepsTheirOrder()
{
    startOn(Board::Zep2);
    for (int i = 1; i <= 9; ++i) {
        m_client->ask("AT+TXDATA=0000000" + QByteArray::number(i));
    }
    QTRY_COMPARE(m_client->bytes, QByteArray("+OK\r\n").repeated(8) + "+ERROR=21\r\n");
    QCOMPARE(execute("tx-error 3"), QStringLiteral("ok"));
    m_client->ask("AT+ATXSTART=");
    QTRY_VERIFY(m_client->bytes.endsWith("+OK\r\n+TX=3,00000001\r\n")); // and it waits on
    m_client->ask("AT+ATXSTART=");
    QTRY_VERIFY(m_client->bytes.endsWith("+OK\r\n+TX=0,00000001\r\n"));
    m_client->bytes.clear();
    m_client->ask("AT+TXFIFO=?");
    QTRY_VERIFY(m_client->bytes.endsWith("+TXFIFO=end\r\n"));
    QVERIFY2(m_client->bytes.startsWith("+TXFIFO=1,00000001,0x0\r\n+TXFIFO=0,00000002,0x0\r\n"), m_client->bytes);
    QCOMPARE(m_client->bytes.count('\n'), 9);
    // One that has been sent gives way.
    m_client->bytes.clear();
    m_client->ask("AT+TXDATA=AAAA,0x1");
    m_client->ask("AT+TXFIFO=?");
    QTRY_VERIFY(m_client->bytes.endsWith("+TXFIFO=0,AAAA,0x1\r\n+TXFIFO=end\r\n"));
    QVERIFY2(m_client->bytes.startsWith("+OK\r\n+TXFIFO=0,00000002,0x0\r\n"), m_client->bytes);
}

void TestZepsim::queueGoesOutInAPassOnly()
{
    startOn(Board::Tbx);
    QCOMPARE(execute("forget-bulletins"), QStringLiteral("ok"));
    m_client->ask("AT+TXDATA=00000001");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n");
    m_client->bytes.clear();
    // In a pass, with the prediction off.
    QCOMPARE(execute("pass 0"), QStringLiteral("ok"));
    QCOMPARE(execute("late 400"), QStringLiteral("ok"));
    m_client->ask("AT+PING=?");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n");
    // With the prediction on, and a pass to come.
    QCOMPARE(execute("pass 2"), QStringLiteral("ok"));
    m_client->send("AT+PREPASS_EN=1\r\nAT+NEXTPASS=?\r\n");
    QTRY_VERIFY(m_client->bytes.contains("+NEXTPASS=") && m_client->bytes.contains(",120,"));
    QTRY_VERIFY(m_client->bytes.endsWith("+TX=0,00000001\r\n"));
    QVERIFY2(m_client->lastReadMs >= 2500 + airtimeMs, qPrintable(QString::number(m_client->lastReadMs)));
}

void TestZepsim::whatWaitsWhenAPassBeginsGoesOutInItUnlessSkipped()
{
    startOn(Board::Zep2);
    const auto isOver = [this] { return !m_simulator->device().prediction().runningPass(); };
    QCOMPARE(execute("forget-bulletins"), QStringLiteral("ok"));
    m_client->send("AT+PREPASS_EN=1\r\nAT+ATXRP=4,60000\r\nAT+TXDATA=00000001\r\n");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+OK\r\n+OK\r\n");
    QCOMPARE(execute("skip-pass"), QStringLiteral("ok"));
    QCOMPARE(execute("pass 0 2"), QStringLiteral("ok"));
    QTRY_VERIFY(isOver());
    QVERIFY2(!m_client->bytes.contains("+TX"), "sent in the pass to be skipped");
    // The repetitions that do not fit into the pass are left out.
    QCOMPARE(execute("pass 0 3"), QStringLiteral("ok"));
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+OK\r\n+OK\r\n+TX=0,00000001\r\n");
    QVERIFY2(!isOver(), "the result came after the pass");
    m_client->bytes.clear();
    m_client->ask("AT+TXDATA=00000002");
    QTRY_VERIFY(isOver());
    QCOMPARE(m_client->bytes, "+OK\r\n");
    QCOMPARE(execute("pass 0 2"), QStringLiteral("ok"));
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+TX=0,00000002\r\n");
}

void TestZepsim::flushCancelsWhatIsInTheAir()
{
    startOn(Board::Zep2);
    m_client->send("AT+TXDATA=00000001\r\nAT+TX=00000002\r\nAT+TXFIFO=\r\nAT+TXFIFO=?\r\n");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+OK\r\n+OK\r\n+TXFIFO=end\r\n");
    m_client->bytes.clear();
    QCOMPARE(execute("late 400"), QStringLiteral("ok"));
    m_client->ask("AT+PING=?");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n");
    m_client->ask("AT+TX=00000003");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+OK\r\n+TX=0,00000003\r\n");
}

void TestZepsim::lateAnswerHoldsUpTheNext()
{
    startOn(Board::Zep2);
    QCOMPARE(execute("late 300"), QStringLiteral("ok"));
    m_client->send("AT+PING=?\r\nAT+RST=?\r\n");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+ERROR=4\r\n");
    QVERIFY(m_client->lastReadMs >= 300);
    m_client->ask("AT+PING=?");
    QTRY_VERIFY(m_client->bytes.endsWith("+ERROR=4\r\n+OK\r\n"));
    QVERIFY2(m_client->lastReadMs < 300, "late again");
}

void TestZepsim::mutedAndSpoiltRequestsAreCounted()
{
    startOn(Board::Zep2);
    QCOMPARE(execute("mute 2"), QStringLiteral("ok"));
    QCOMPARE(execute("error 44"), QStringLiteral("ok"));
    m_client->send("AT+POS=1,1\r\nAT+PING=?\r\nAT+POS=2,2\r\nAT+POS=?\r\n");
    QTRY_COMPARE(m_client->bytes, "+ERROR=44\r\n+POS=43.5495,1.4849\r\n");
}

void TestZepsim::splitAnswerComesInTwoReads()
{
    startOn(Board::Zep2);
    QCOMPARE(execute("split"), QStringLiteral("ok"));
    m_client->ask("AT+PING=?");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n");
    QCOMPARE(m_client->reads, 2);
    m_client->ask("AT+PING=?");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+OK\r\n");
    QCOMPARE(m_client->reads, 3);
}

void TestZepsim::baudPaceSpacesTheBytes()
{
    SimOptions options;
    options.baudPace = true;
    startWith(options);
    m_client->ask("AT+AOP=?");
    QTRY_VERIFY(m_client->bytes.endsWith("+AOP=end\r\n"));
    const qint64 wireMs = m_client->bytes.size() * 10 * 1000 / 9600;
    QVERIFY2(m_client->lastReadMs >= wireMs && m_client->lastReadMs < 2 * wireMs + 200,
             qPrintable(QStringLiteral("%1 ms for %2 on the wire").arg(m_client->lastReadMs).arg(wireMs)));
    QVERIFY2(m_client->reads > 20, qPrintable(QString::number(m_client->reads)));
}

void TestZepsim::requestsAreCutFromAnyPieces()
{
    startOn(Board::Zep2);
    const QSignalSpy requests(m_simulator.get(), &Simulator::requestReceived);
    m_client->send("AT+PI");
    m_client->send("NG=?\r\n\r\nAT+PING=?\nAT+PING=?\r");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+OK\r\n+OK\r\n");
    QCOMPARE(requests.size(), 3);
    QCOMPARE(requests.first().first().toString(), QStringLiteral("AT+PING=?"));
}

void TestZepsim::overlongRequestIsOneError()
{
    startOn(Board::Zep2);
    m_client->send("AT+TX=" + QByteArray(3000, '0') + "\r\nAT+PING=?\r\n");
    QTRY_COMPARE(m_client->bytes, "+ERROR=2\r\n+OK\r\n");
}

void TestZepsim::garbageIsNoText()
{
    startOn(Board::Zep2);
    QCOMPARE(execute("garbage 50"), QStringLiteral("ok"));
    QTRY_COMPARE(m_client->bytes.size(), 52);
    QVERIFY(m_client->bytes.endsWith("\r\n"));
    for (const char byte : m_client->bytes.chopped(2)) {
        QStringDecoder decoder(QStringDecoder::Utf8);
        const QString text = decoder(QByteArray(1, byte));
        QVERIFY(decoder.hasError() || text.contains(QChar::ReplacementCharacter));
    }
}

void TestZepsim::unpluggedPortHangsUpAndComesBackByItsLink()
{
    startOn(Board::Zep2);
    const QSignalSpy plugged(m_simulator.get(), &Simulator::plugged);
    m_client->send("AT+POS=1,2\r\nAT+TX=00000001\r\n");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+OK\r\n");
    QCOMPARE(execute("plug"), QStringLiteral("error: plug: plugged in already"));
    QCOMPARE(execute("unplug"), QStringLiteral("ok"));
    QTRY_VERIFY(m_client->hungUp);
    QVERIFY(!QFileInfo(linkPath()).isSymLink());
    QCOMPARE(execute("unplug"), QStringLiteral("error: unplug: not plugged in"));
    QCOMPARE(execute("rx 00"), QStringLiteral("ok")); // heard by nobody

    QCOMPARE(execute("plug"), QStringLiteral("ok"));
    QCOMPARE(plugged.size(), 1);
    QCOMPARE(QFile::symLinkTarget(linkPath()), m_simulator->portPath());
    m_client = std::make_unique<Client>(linkPath());
    m_client->send("AT+POS=?\r\nAT+TX=00000002\r\n"); // settings stay, what was in the air does not
    QTRY_COMPARE(m_client->bytes, "+POS=1,2\r\n+OK\r\n+TX=0,00000002\r\n");
}

void TestZepsim::foreignFileIsNotReplacedByTheLink()
{
    QFile file(linkPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    SimOptions options;
    options.link = linkPath();
    {
        Simulator simulator(options);
        QVERIFY(!simulator.start());
        QVERIFY(simulator.errorString().contains("is no link"));
    }
    QVERIFY(file.exists());
}

void TestZepsim::rangerHearsNothingUntilItsButtonIsPushed()
{
    startOn(Board::Ranger);
    const QSignalSpy requests(m_simulator.get(), &Simulator::requestReceived);
    m_client->ask("AT+ID=?");
    QTRY_COMPARE(requests.size(), 1);
    QCOMPARE(execute("wake"), QStringLiteral("ok"));
    m_client->ask("AT+PING=?");
    QTRY_COMPARE(m_client->bytes, "RANGER -- BUTTON PUSHED\r\n+OK\r\n");
    QCOMPARE(execute("sleep"), QStringLiteral("ok"));
    m_client->ask("AT+ID=?");
    QTRY_COMPARE(requests.size(), 3);
    QCOMPARE(execute("wake"), QStringLiteral("ok"));
    QTRY_VERIFY(m_client->bytes.endsWith("+OK\r\nRANGER -- SLEEP\r\nRANGER -- BUTTON PUSHED\r\n"));
}

void TestZepsim::rangerWakesUpForEachClientThatOpensThePort()
{
    SimOptions options;
    options.board = Board::Ranger;
    options.autoWakeMs = 100;
    startWith(options);
    QTRY_COMPARE(m_client->bytes, "RANGER -- BUTTON PUSHED\r\n");
    QVERIFY2(m_client->lastReadMs >= 90, qPrintable(QString::number(m_client->lastReadMs)));
    m_client.reset();
    m_client = std::make_unique<Client>(linkPath());
    QTRY_COMPARE(m_client->bytes, "RANGER -- BUTTON PUSHED\r\n");
}

void TestZepsim::settingOfARangerLastsOnlyFromItsRestartOn()
{
    startOn(Board::Ranger);
    QCOMPARE(execute("wake"), QStringLiteral("ok"));
    m_client->send("AT+PACQ=120\r\nAT+PACQ=?\r\nAT+RST=\r\nAT+PING=?\r\n"); // the last one is not heard
    QTRY_COMPARE(m_client->bytes, "RANGER -- BUTTON PUSHED\r\n+OK\r\n+PACQ=120\r\n+OK\r\n"
                                  "RANGER -- PARAMETERS RESTORED\r\n");
    m_client->send("AT+PACQ=240\r\n");
    QTRY_VERIFY(m_client->bytes.endsWith("RESTORED\r\n+OK\r\n"));
    QCOMPARE(execute("assert stuck"), QStringLiteral("ok"));
    QTRY_VERIFY(m_client->bytes.endsWith("+ASSERT=stuck\r\nRANGER -- PARAMETERS RESTORED\r\n"));
    m_client->send("AT+PACQ=?\r\nAT+PACQ=240\r\n");
    QTRY_VERIFY(m_client->bytes.endsWith("\r\n+PACQ=120\r\n+OK\r\n"));
    m_simulator->device().cutPower();
    QCOMPARE(execute("wake"), QStringLiteral("ok"));
    m_client->ask("AT+PACQ=?");
    QTRY_VERIFY(m_client->bytes.endsWith("PUSHED\r\n+PACQ=120\r\n"));
}

void TestZepsim::rangerFailsInTheMiddleOfItsConfiguration()
{
    SimOptions options;
    options.board = Board::Ranger;
    options.awakeMs = 500;
    startWith(options);
    for (const char *command : {"wake", "refuse PACQ", "sleep-in-the-middle 3", "lose-restart"}) {
        QCOMPARE(execute(command), QStringLiteral("ok"));
    }
    m_client->send("AT+PACQ=99\r\nAT+PACQ=?\r\nAT+ZEP_REDUN=5\r\nAT+POS=1,2\r\nAT+PING=?\r\n");
    QTRY_COMPARE(m_client->bytes, "RANGER -- BUTTON PUSHED\r\n+ERROR=5\r\n+ERROR=5\r\n+OK\r\n+OK\r\n"
                                  "RANGER -- SLEEP\r\n");
    QVERIFY(execute("refuse PACQ") + execute("wake") == "okok" && execute("refuse TX").startsWith("error"));
    m_client->send("AT+PACQ=99\r\nAT+RST=\r\n");
    QTRY_VERIFY(m_client->bytes.endsWith("PUSHED\r\n+OK\r\n+OK\r\nRANGER -- SLEEP\r\n")); // nobody asked it anything
}

void TestZepsim::assertionEndsTheTransmission()
{
    startOn(Board::Zep2);
    m_client->send("AT+TXDATA=00000001\r\nAT+TX=00000002\r\n");
    QTRY_COMPARE(m_client->bytes, "+OK\r\n+OK\r\n");
    m_client->bytes.clear();
    QCOMPARE(execute("assert radio.c:12 stuck"), QStringLiteral("ok"));
    QTRY_COMPARE(m_client->bytes, "+ASSERT=radio.c:12 stuck\r\n");
    QTRY_VERIFY(m_simulator->device().isListening());
    m_client->ask("AT+TXFIFO=?");
    QTRY_VERIFY(m_client->bytes.endsWith("+TXFIFO=end\r\n"));
    QCOMPARE(m_client->bytes, "+ASSERT=radio.c:12 stuck\r\n+TXFIFO=end\r\n");
}

void TestZepsim::bulletinsAreServedWithTheFaultAskedFor_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("status"); // 0: no answer
    QTest::addColumn<int>("idents");
    const QString path = "/mdr/resources/fleetfeed";
    QTest::newRow("a query") << "ok" << path + "?login=a&password=b" << 200 << 6;
    QTest::newRow("another path") << "ok" << path + "s" << 404 << 0;
    QTest::newRow("500") << "500" << path << 500 << 0;
    QTest::newRow("empty") << "empty" << path << 200 << 0;
    QTest::newRow("broken") << "broken" << path << 200 << 0;
    QTest::newRow("errors") << "errors" << path << 200 << 6;
    QTest::newRow("unknown-status") << "unknown-status" << path << 200 << 6;
    QTest::newRow("no-ident") << "no-ident" << path << 200 << 5;
    QTest::newRow("silent") << "silent" << path << 0 << 0;
}

void TestZepsim::bulletinsAreServedWithTheFaultAskedFor()
{
    QFETCH(QString, mode);
    QFETCH(QString, path);
    QFETCH(int, status);
    QFETCH(int, idents);
    SimOptions options;
    options.bulletinPort = 0;
    startWith(options);
    QCOMPARE(execute("bulletins " + mode), QStringLiteral("ok"));
    QNetworkAccessManager manager;
    QNetworkRequest request(QUrl(m_simulator->bulletinUrl()).resolved(QUrl(path)));
    request.setTransferTimeout(mode == "silent" ? 500 : 5000);
    const std::unique_ptr<QNetworkReply> reply(manager.get(request));
    QTRY_VERIFY(reply->isFinished());
    QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), status);
    const QByteArray body = reply->isOpen() ? reply->readAll() : QByteArray();
    QCOMPARE(body.isEmpty(), mode == "empty" || status == 0 || status == 404);
    const QJsonObject root = QJsonDocument::fromJson(body).object();
    QCOMPARE(root.contains("errors"), mode == "errors");
    const QJsonArray list = root["satellitesInformation"].toArray();
    QCOMPARE(list.size(), idents + (mode == "no-ident" ? 1 : 0));
    QSet<QString> foundIdents;
    QStringList outOfService;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (const QJsonValue &satellite : list) {
        const QJsonObject links = satellite["broadcastedStatus"].toObject();
        if (links.contains("fleetfeedIdent")) {
            foundIdents += links["fleetfeedIdent"].toString();
        }
        outOfService += QStringList(links["operatingStatus"].toString()).filter("OUT OF SERVICE");
        const QString text = satellite["aop"]["date"].toString().replace('_', 'T') + 'Z';
        const qint64 ageSeconds = QDateTime::fromString(text, Qt::ISODate).secsTo(now);
        QVERIFY2(ageSeconds >= 0 && ageSeconds < 2 * 3600, qPrintable(text));
    }
    QCOMPARE(foundIdents.size(), idents);
    QCOMPARE(outOfService.size(), idents > 0 ? 1 : 0);
    QCOMPARE(body.contains("HELIO-9"), mode == "unknown-status");
}

void TestZepsim::passTableIsThatOfTheDevice()
{
    const QString program = QCoreApplication::applicationDirPath() + "/../sim/zepsim";
    QProcess process;
    process.start(program, {"--passes-csv", "--from", "2026-03-20T12:00:00Z", "--hours", "48", "--separator", ";"});
    QVERIFY2(process.waitForFinished() && process.exitCode() == 0, qPrintable(process.errorString()));
    QStringList lines = QString::fromUtf8(process.readAllStandardOutput()).split('\n');
    QCOMPARE(lines.takeLast(), QString());
    QCOMPARE(lines.takeFirst(), QStringLiteral("Satellite;Start date/time;Middle date/time;End date/time;Duration;"
                                               "Middle elevation;Start azimuth;Middle azimuth;End azimuth"));
    SimOptions options;
    SimDevice device(options);
    QCOMPARE(device.request("AT+PREPASS_CFG=0,0,2026-03-20T12:00:00Z,2026-03-22T12:00:00Z,5,90,2,1000,5,30").lines,
             QStringList("+OK"));
    QVERIFY(lines.size() > 20);
    QDateTime previous;
    for (const QString &line : qAsConst(lines)) {
        const QStringList fields = line.split(';');
        QCOMPARE(fields.size(), 9);
        QVERIFY2(!line.startsWith("Boreas-E"), "a satellite that is out of service");
        const auto date = [&fields](int index) {
            QDateTime utc = QDateTime::fromString(fields.at(index), "MM-dd-yyyy hh:mm:ss");
            utc.setTimeSpec(Qt::UTC);
            return utc;
        };
        QCOMPARE(QTime::fromString(fields.at(4), "hh:mm:ss").msecsSinceStartOfDay(), date(1).msecsTo(date(3)));
        QVERIFY(date(2) > date(1) && date(2) < date(3) && (!previous.isValid() || date(1) >= previous));
        previous = date(1);
        if (line.startsWith("Cirrus")) {
            continue; // not one of the device's
        }
        // A minute ahead of each the device names this pass, if it names none that starts within the minute.
        QCOMPARE(device.request("AT+UDATE=" + date(1).addSecs(-60).toString(Qt::ISODate)).lines, QStringList("+OK"));
        const QString named = device.request("AT+NEXTPASS=?").lines.first().section(',', 1, 1);
        const QDateTime start = readDeviceDate(named);
        const auto isInTable = [&](const QString &other) {
            return other.contains(start.toString("MM-dd-yyyy hh:mm:ss"));
        };
        QVERIFY2(start <= date(1) && std::any_of(lines.cbegin(), lines.cend(), isInTable), qPrintable(named));
    }
}

void TestZepsim::badConsoleLineIsRefused_data()
{
    QTest::addColumn<QString>("line");
    for (const char *line :
         {"",         "nonsense",   "rx",        "rx xyz",      "tx-error",  "tx-error one", "mute -1",
          "late 1.5", "garbage 0",  "wake",      "sleep",       "split now", "quit now",     "pass",
          "pass 1 0", "pass 1 2 3", "blacklist", "blacklist 9", "bulletins", "bulletins ok"}) {
        QTest::newRow(line) << line;
    }
}

void TestZepsim::badConsoleLineIsRefused()
{
    QFETCH(QString, line);
    startOn(Board::Zep2);
    const QString answer = execute(line);
    QVERIFY2(answer.startsWith("error: ") && !answer.contains('\n'), qPrintable(answer));
}

void TestZepsim::consoleIsReachableBySocketOnce()
{
    SimOptions options;
    options.consoleSocket = m_dir->filePath("console");
    startWith(options);
    QLocalSocket person;
    person.connectToServer(options.consoleSocket);
    person.write("rx 0102\nnonsense\nhelp\n");
    QTRY_COMPARE(m_client->bytes, "+RX=0102\r\n");
    QByteArray answers;
    const auto hasAll = [&] { return (answers += person.readAll()).count("ok\n") == 2; };
    QTRY_VERIFY(hasAll());
    QVERIFY2(answers.startsWith("ok\nerror: unknown command \"nonsense\""), answers);
    for (const char *word : {"wake", "sleep", "rx", "bc", "tx-error", "error", "mute", "late", "garbage", "split",
                             "assert", "unplug", "plug", "quit"}) {
        QVERIFY2(answers.contains(QByteArray("\n") + word), word);
    }

    Simulator second(options);
    QVERIFY2(!second.start(), "two simulators on one console");
    m_simulator.reset();
    QVERIFY(!QFileInfo::exists(options.consoleSocket));
}

void TestZepsim::commandLineIsReadOrRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("console");
    QTest::newRow("no board") << QStringList{} << 2 << "";
    QTest::newRow("board unknown") << QStringList{"--board", "zep3"} << 2 << "";
    QTest::newRow("option unknown") << QStringList{"--board", "zep1", "--fast"} << 2 << "";
    QTest::newRow("airtime negative") << QStringList{"--board", "zep1", "--airtime", "-5"} << 2 << "";
    QTest::newRow("seed no number") << QStringList{"--board", "zep1", "--seed", "x"} << 2 << "";
    QTest::newRow("stray word") << QStringList{"--board", "zep1", "zep2"} << 2 << "";
    QTest::newRow("port too high") << QStringList{"--board", "zep1", "--bulletins", "65536"} << 2 << "";
    QTest::newRow("table of no date") << QStringList{"--passes-csv", "--from", "2026-02-30T00:00:00Z"} << 2 << "";
    QTest::newRow("table of no length") << QStringList{"--passes-csv", "--hours", "0"} << 2 << "";
    QTest::newRow("table with tabs") << QStringList{"--passes-csv", "--separator", "\t"} << 2 << "";
    QTest::newRow("half a table") << QStringList{"--board", "zep1", "--hours", "3"} << 2 << "";
    QTest::newRow("table") << QStringList{"--passes-csv", "--from", "2026-02-28"} << 0 << "";
    QTest::newRow("console by the link") << QStringList{"--board", "tbx", "--link", "/p/t"} << 0 << "/p/t.console";
    QTest::newRow("console by name") << QStringList{"--board", "tbx", "--link", "/p/t", "--console", "/c"} << 0 << "/c";
    QTest::newRow("no console") << QStringList{"--board", "tbx"} << 0 << "";
}

void TestZepsim::commandLineIsReadOrRefused()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, console);
    const SimOptionsResult result = readOptions(QStringList("zepsim") + arguments);
    QCOMPARE(result.options.has_value(), exitCode == 0);
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(result.message.isEmpty(), exitCode == 0);
    QCOMPARE(result.options.value_or(SimOptions()).consoleSocket, console);
}

void TestZepsim::programEndsCleanlyBySignalOnly()
{
    const QString program = QCoreApplication::applicationDirPath() + "/../sim/zepsim";
    const QString trace = m_dir->filePath("trace");
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, {"--board", "zep2", "--link", linkPath(), "--trace", trace});
    QVERIFY2(process.waitForStarted(), qPrintable(program));
    QTRY_VERIFY(process.canReadLine());
    QCOMPARE(QString(process.readLine().trimmed()), QFile::symLinkTarget(linkPath()));
    m_client = std::make_unique<Client>(linkPath());
    m_client->ask("AT+PING=?"); // answered after standard input has ended
    QTRY_COMPARE(m_client->bytes, "+OK\r\n");
    QLocalSocket console;
    console.connectToServer(linkPath() + ".console");
    console.write("unplug\nplug\n");
    QTRY_COMPARE(console.bytesAvailable(), 6);
    QTRY_VERIFY(process.canReadLine()); // the new path
    QCOMPARE(QString(process.readLine().trimmed()), QFile::symLinkTarget(linkPath()));

    process.terminate();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QVERIFY(!QFileInfo(linkPath()).isSymLink() && !QFileInfo::exists(linkPath() + ".console"));
    QFile file(trace);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray log = file.readAll();
    QVERIFY2(
        QRegularExpression("^\\d+ < AT\\+PING=\\?\n\\d+ > \\+OK\n\\d+ # unplug\n\\d+ # plug\n$").match(log).hasMatch(),
        log);
}

QTEST_GUILESS_MAIN(TestZepsim)
#include "tst_zepsim.moc"
