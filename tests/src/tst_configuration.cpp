// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "HttpServer.h"
#include "LoRaConnectivity.h"
#include "PeriodicProfile.h"
#include "PrepassProfile.h"
#include "SatelliteAopModel.h"
#include "ScriptedSession.h"

#include <QDir>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

/// For the administrator no file is without permission.
void asNobody(const std::function<void()> &what)
{
    const uid_t own = geteuid();
    QVERIFY(own != 0 || seteuid(65534) == 0);
    what();
    QVERIFY(seteuid(own) == 0);
}
} // namespace

class TestConfiguration : public QObject
{
    Q_OBJECT

    HttpServer m_server;
    std::unique_ptr<ScriptedSession> m_session;
    QTemporaryDir m_folder;
    QStringList m_told; ///< what the view was told: "true", or "false", the message, and a "!" for a failure

    [[nodiscard]] ZepManager &manager() { return m_session->manager; }
    [[nodiscard]] TxManager *tx() { return manager().tx(); }
    [[nodiscard]] SensorModel *sensors() { return manager().board()->sensorListModel(); }
    [[nodiscard]] SatelliteAopModel *satellites() { return tx()->prepassProfile()->satelliteAopModel(); }
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    void answer(const QString &word, const QStringList &lines)
    {
        m_session->peer.answer("AT+"_L1 + word + "=*"_L1, lines);
    }

    /// From now on the question for the wake-up button has this outcome.
    template <typename Receiver, typename What> void onWakeUpQuestion(Receiver *receiver, What what)
    {
        QObject::disconnect(&manager(), &ZepManager::userActionRequested, nullptr, nullptr);
        connect(&manager(), &ZepManager::userActionRequested, receiver, what);
    }

    [[nodiscard]] QStringList requestedWords()
    {
        QStringList words = m_session->peer.requests();
        return words.replaceInStrings(QRegularExpression(u"^AT.|=.*"_s), QString());
    }

    /// Every model gets values of its own, such as the input fields and the device allow, of six digits.
    void generate(quint32 seed)
    {
        QRandomGenerator random(seed);
        const auto number = [&random](double range) {
            return QString::number(0.001 + random.generateDouble() * range, 'g', 6).toDouble();
        };
        const auto hex = [&random] { return QString::number(random.generate64() | 1ULL << 63, 16); };
        const auto byte = [&random](int first, int last) {
            return static_cast<uchar>(random.bounded(first, last + 1));
        };
        for (uchar row = 0; row < 8; ++row) {
            sensors()->setEnable(row, random.bounded(2) || row == SensorModel::PUSH_BUTTON);
            sensors()->setAlert(row, random.bounded(2) && row >= SensorModel::LIGHT);
        }
        sensors()->setThresholdValues(SensorModel::LIGHT, u"%1,%2"_s.arg(random.bounded(9999)).arg(random.generate()));
        sensors()->setThresholdValues(SensorModel::ACCELEROMETER, QString(1 + random.bounded(20), u'9'));
        sensors()->setThresholdValues(SensorModel::DRY_CONTACT, QString::number(random.bounded(2)));
        sensors()->setAcquisitionPeriod(static_cast<ushort>(random.bounded(60, 65536)));
        PrepassProfile *prepass = tx()->prepassProfile();
        tx()->setSelectedProfile(random.bounded(2) ? TxManager::PREPASS_ON_MODULE : TxManager::PERIODIC);
        tx()->periodicProfile()->setRedundancy(byte(1, 255));
        prepass->setRedundancy(byte(1, 255));
        prepass->setPosition({-number(90), number(180)});
        prepass->setConfig({byte(0, 255), number(90), byte(0, 255)});
        tx()->setLoraEnabled(random.bounded(2));
        tx()->loraConfig()->setAppEui(hex());
        tx()->loraConfig()->setAppKey(hex() + hex().toUpper());
        tx()->loraConfig()->setAckEnabled(random.bounded(2));
        tx()->loraConfig()->setRedundancy(byte(1, 10));
        const QDateTime date(QDate(2020, 1, 1), QTime(0, 0), Qt::UTC);
        for (const QChar ident : {u'7', u'A', u'F'}) {
            satellites()->updateOrAddSatellite(ident, date.addSecs(random.bounded(1 << 30)), number(9999), number(180),
                                               number(360), -number(99), number(200), -number(9), u"NA"_s,
                                               SatelliteAop::DNLK_NA, SatelliteAop::UPLK_NA);
        }
        tx()->setCustomUtcTime(date.addSecs(random.bounded(1 << 30)).toString(Qt::ISODate));
    }

    /// What a file keeps of them: the settings of what is switched off stay behind.
    [[nodiscard]] QString state()
    {
        const bool predicts = tx()->selectedProfile() != TxManager::PERIODIC;
        const PrepassProfile *prepass = tx()->prepassProfile();
        const PrepassConfig config = predicts ? prepass->config() : PrepassConfig();
        const LoRaConnectivity none;
        const LoRaConnectivity *lora = tx()->loraEnabled() ? tx()->loraConfig() : &none;
        QString text;
        QDebug out(&text);
        const auto sensorMap = sensors()->sensorMap();
        for (const Sensor *sensor : sensorMap) {
            out << sensor->enable() << sensor->alert() << sensor->thresholdValues();
        }
        out << sensors()->acquisitionPeriod() << prepass->position().latitude << prepass->position().longitude
            << predicts << (predicts ? prepass->redundancy() : tx()->periodicProfile()->redundancy())
            << config.predictionDuration << config.minElevation << config.minPassDuration << config.maxElevation
            << config.maxPasses << config.timeMargin << config.computationStep << tx()->loraEnabled() << lora->appEui()
            << lora->appKey() << lora->ackEnabled() << lora->redundancy();
        for (const SatelliteAop *satellite : satellites()->satellites()) {
            out << satellite->aopAtParameters();
        }
        return text;
    }

private Q_SLOTS:
    void initTestCase()
    {
        std::signal(SIGXFSZ, SIG_IGN);
        QVERIFY(mkfifo(qPrintable(path(u"pipe"_s)), 0600) == 0 && chmod(qPrintable(m_folder.path()), 0755) == 0);
    }

    void init()
    {
        m_session.reset();
        m_session = std::make_unique<ScriptedSession>(m_server.url());
        m_server.serve("500 No", "no");
        QVERIFY(m_session->connectTo(ZepBoard::RANGER));
        answer(u"RST"_s, {u"+OK"_s});
        m_session->peer.forgetRequests();
        m_session->log.clear();
        m_told.clear();
        connect(&manager(), &ZepManager::processingDataChanged, this, [this](const QString &message, bool error) {
            m_told << (manager().processingData() ? u"true"_s : "false"_L1 + message + (error ? u"!"_s : QString()));
        });
    }

    void uploadThatFailsAtACommandLeavesNothingBusy_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QStringList>("sent");
        QTest::addColumn<QString>("told");
        QTest::addColumn<QString>("line");
        const QString sensorStage = u"set sensor configuration"_s;
        const QString profileStage = u"set Tx profile configuration"_s;
        QStringList words;
        QStringList stages;
        QStringList lines;
        for (const auto &[row, stage, line] : {
                 // commands in their order                       stage          what is logged
                 std::tuple{u"ALRT_LIGHT ALRT_ACC ALRT_DRYC ALRT_PB"_s, sensorStage, "set sensor alert on RANGER"},
                 {u"PACQ_SENS"_s, sensorStage, "enable/disable sensors on RANGER"},
                 {u"ALRT_SENS PACQ"_s, sensorStage, "enable/disable sensor alerts on RANGER"},
                 {u"POS"_s, profileStage, ""},
                 {u"UDATE"_s, profileStage, "set UTC date on RANGER"},
                 {u"AOP"_s, profileStage, "set AOP data"},
                 {u"PREPASS_EN"_s, profileStage, ""},
                 {u"ZEP_REDUN"_s, profileStage, "set Tx redundancy"},
                 {u"PREPASS_CFG"_s, u"set Prepass configuration"_s, "set prediction pass config"},
                 {u"LORA_EN"_s, QString(), ""}, // what becomes of LoRa is not looked at
                 {u"LORA_AEUI LORA_AKEY LORA_ACK LORA_REDUN"_s, QString(), "set LoRa configuration"},
                 {u"RST"_s, u"reset device"_s, "reset RANGER"},
             }) {
            for (const QString &word : row.split(u' ')) {
                words << word;
                stages << stage;
                lines << line;
            }
        }
        const auto failed = [](const QString &stage) { return " falseUnable to "_L1 + stage + "!!"_L1; };
        for (qsizetype at = 0; at < words.size(); ++at) {
            const auto row = [&](const char *way, const QStringList &sent, const QString &told, const QString &line) {
                QTest::addRow("%s %s", qPrintable(words[at]), way) << QString(way) << sent << "true"_L1 + told << line;
            };
            const QStringList upToIt = words.first(at + 1);
            const bool goesOn = stages[at].isEmpty();
            const QStringList sent = !goesOn                     ? upToIt
                                     : words[at] == "LORA_EN"_L1 ? words
                                                                 : upToIt + QStringList(u"RST"_s);
            const QString failure = goesOn ? QString() : failed(stages[at]);
            row("refuses", sent, failure, lines[at]);
            row("resets", sent, u" falseConfiguration uploaded!"_s + failure, lines[at]);
            // Cancelled is what comes next: of the bulletins another, and after the last nothing but the report.
            const QString next = words[at] == "AOP"_L1 ? stages[at] : stages.value(at + 1);
            row("sleeps", upToIt, at == words.size() - 1 ? QString() : failed(next.isEmpty() ? stages.last() : next),
                {});
            row("is unplugged", upToIt, u" false"_s, {});
            if (at % 6 == 0) {
                row("is left", {}, u" false"_s, {});
            }
        }
    }

    void uploadThatFailsAtACommandLeavesNothingBusy()
    {
        QFETCH(QString, way);
        QFETCH(QString, line);
        const QString word = QString(QTest::currentDataTag()).section(u' ', 0, 0);
        generate(3);
        tx()->setSelectedProfile(TxManager::PREPASS);
        tx()->setLoraEnabled(true);
        onWakeUpQuestion(&manager(), &ZepManager::cancelModuleRequest);
        connect(manager().serialPort(), &SerialPortManager::serialError, &manager(), &ZepManager::disconnect);
        answer(word, way == "refuses"_L1  ? QStringList{u"+ERROR=5"_s}
                     : way == "sleeps"_L1 ? QStringList{u"RANGER -- SLEEP"_s, u"+OK"_s}
                     : way == "resets"_L1 ? QStringList{u"RANGER -- PARAMETERS RESTORED"_s}
                                          : QStringList());
        connect(&m_session->peer, &ScriptedPeer::requested, &manager(), [&](const QString &request) {
            if (!way.startsWith(u"is "_s) || !request.startsWith("AT+"_L1 + word + u'=')) {
                return;
            }
            m_session->peer.disconnect(&manager());
            QTimer::singleShot(0, &manager(), [&] {
                if (way == "is unplugged"_L1) {
                    m_session->peer.hangUp();
                    return;
                } // for another session, in the middle of the upload
                answer(word, {u"+OK"_s});
                manager().disconnect();
                onWakeUpQuestion(&manager(), [] {});
                QVERIFY(m_session->connectTo(ZepBoard::RANGER));
            });
        });
        manager().uploadConfig();
        QStringList requested = requestedWords();
        requested.removeDuplicates(); // each satellite is tried
        m_told.removeDuplicates();
        QTEST(m_told.join(u' '), "told");
        QCOMPARE(manager().processingData(), m_told.last() == "true"_L1);
        QCOMPARE(!manager().board(), way == "is unplugged"_L1);
        if (way != "is left"_L1) {
            QTEST(requested, "sent");
        }
        if (way != "sleeps"_L1 && way != "is left"_L1) {
            QStringList log = m_session->log.filter(u"Unable"_s);
            log.removeDuplicates();
            QCOMPARE(log.join(u' '), line.isEmpty() ? QString() : "[APP] Unable to "_L1 + line);
        }

        answer(word, {u"+OK"_s});
        answer(u"RST"_s, {u"+OK"_s, u"RANGER -- PARAMETERS RESTORED"_s});
        onWakeUpQuestion(&m_session->peer, [this] { m_session->peer.say("RANGER -- BUTTON PUSHED"); });
        if (!manager().board()) {
            m_session->peer.plugAgain();
            QVERIFY(m_session->connectTo(ZepBoard::RANGER));
        } else if (manager().processingData()) {
            m_session->peer.say("RANGER -- PARAMETERS RESTORED");
            QTRY_VERIFY(!manager().processingData());
        }
        m_told.clear();
        manager().uploadConfig();
        QTRY_COMPARE(m_told.join(u' '), u"true falseConfiguration uploaded!"_s);
    }

    void cancelledWakeUpEndsAnUploadAndAReading()
    {
        manager().board()->setIsAwake(false);
        onWakeUpQuestion(&manager(), &ZepManager::cancelModuleRequest);
        QSignalSpy asked(&manager(), &ZepManager::userActionRequested);
        manager().uploadConfig();
        manager().getConfig();
        QCOMPARE(m_told.join(u' '), u"true false true false"_s);
        QCOMPARE(asked.count(), 2);
        manager().board()->setIsAwake(true);
        manager().getPrepassEnable();
        QCOMPARE(requestedWords(), QStringList(u"PREPASS_EN"_s)); // the first that the device hears of
    }

    void readingGoesOnPastWhatIsRefusedAndKeepsTheOldValues()
    {
        generate(3);
        tx()->setSelectedProfile(TxManager::PREPASS_ON_MODULE);
        tx()->setLoraEnabled(true);
        tx()->loraConfig()->setDevEui(u"0123456789ABCDEF"_s);
        const QString before = state();
        QStringList asked;
        QStringList lines;
        for (const QString &question :
             u"PREPASS_EN prediction pass 'enable' status|UDATE UTC date from RANGER|ZEP_REDUN Tx redundancy|"
             "LORA_EN LoRa connectivity status|LORA_REDUN LoRa message redundancy|LORA_DEUI LoRa device EUI|"
             "LORA_AEUI LoRa App EUI|LORA_AKEY LoRa App key|LORA_ACK LoRa ack status|"
             "ALRT_LIGHT sensor alert from RANGER|ALRT_ACC sensor alert from RANGER|"
             "ALRT_DRYC sensor alert from RANGER|ALRT_PB sensor alert from RANGER|"
             "PACQ_SENS sensors enable/disable status|ALRT_SENS sensor alerts status|PACQ acquisition period|"
             "POS GNSS position|AOP AOP data|PREPASS_CFG prediction pass config"_s.split(u'|')) {
            asked << question.section(u' ', 0, 0);
            lines << "[APP] Unable to get "_L1 + question.section(u' ', 1);
            answer(asked.last(), {u"+ERROR=5"_s});
        }
        manager().getConfig();
        QCOMPARE(requestedWords(), asked);
        QCOMPARE(m_session->log.filter(u"Unable"_s), lines);
        QCOMPARE(state(), before);
        QCOMPARE(tx()->loraConfig()->devEui(), u"0123456789ABCDEF"_s);
        QCOMPARE(m_told.join(u' '), u"true false"_s);
    }

    void everyValueSurvivesItsFileAndNothingIsAsked()
    {
        manager().board()->setIsAwake(false);
        for (quint32 seed = 1; seed <= 60; ++seed) {
            generate(seed);
            const QString exported = state();
            const QDateTime clock = tx()->utcDateTime();
            manager().exportConfig(path(u"round.conf"_s));
            generate(seed + 1000);
            QVERIFY(state() != exported);
            manager().importConfig(QUrl::fromLocalFile(path(u"round.conf"_s)).toString());
            QCOMPARE(m_told.last(), u"falseConfiguration imported!"_s);
            QCOMPARE(state(), exported);
            QVERIFY(qAbs(clock.secsTo(tx()->utcDateTime())) <= 1);
        }
        tx()->prepassProfile()->setPosition(
            {43.5612345, 0.00001}); // six digits, and no exponent, is all the wire holds
        manager().exportConfig(path(u"round.conf"_s));
        manager().importConfig(path(u"round.conf"_s));
        QVERIFY(m_session->log.contains(u"[APP] Unable to parse configuration entry: AT+POS=43.5612,1e-05"_s));
        QCOMPARE(m_session->peer.requests(), QStringList());
    }

    void importStopsAtTheFirstLineThatIsNone_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("refused"); // the last line of the log but one; none if all is taken
        QTest::addColumn<int>("period");
        const QString entry = u"Unable to parse configuration entry:"_s;
        QTest::newRow("Windows") << QByteArray("AT+PACQ=61\r\nAT+RST=\r\n") << QString() << 61;
        QTest::newRow("no last line end") << QByteArray("\xef\xbb\xbf"
                                                        "AT+PACQ=61\nAT+PACQ=70000")
                                          << QString() << 65535;
        QTest::newRow("empty") << QByteArray() << QString() << 3600;
        QTest::newRow("another board") << QByteArray("AT+SAT=A,1,2\nAT+TX=0,AB\nAT+RCONF=1,2\nAT+ASSERT=x\nAT+PACQ=61")
                                       << QString() << 61;
        QTest::newRow("10,000 digits") << "AT+ALRT_ACC=1," + QByteArray(10000, '9') + "\nAT+PACQ=61" << QString() << 61;
        for (const char *line :
             {"AT+PACQ=?", "", "+PACQ=5", "AT+NONE=1", "AT+ALRT_ACC=1,high", "AT+ALRT_LIGHT=1,", "AT+ALRT_ACC=0"}) {
            QTest::addRow("line %s", line) << QByteArray("AT+PACQ=61\n") + line + "\nAT+PACQ=62\n"
                                           << QString(entry + u' ' + QLatin1String(line)).trimmed() << 61;
        }
        QTest::newRow("device EUI") << QByteArray("AT+PACQ=61\nAT+LORA_DEUI=00,11,22,33,44,55,66,77\nAT+PACQ=62")
                                    << u"Configuration not allowed: device EUI cannot be set"_s << 61;
        QTest::newRow("binary") << QByteArray(500, '\0') << entry + u' ' + QString(80, u'\uFFFD') + u'…' << 3600;
        QTest::newRow("endless") << "AT+FW=" + QByteArray(200 << 20, 'x')
                                 << entry + " AT+FW="_L1 + QString(74, u'x') + u'…' << 3600;
    }

    void importStopsAtTheFirstLineThatIsNone()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, refused);
        write(path(u"import.conf"_s), content);
        manager().importConfig(path(u"import.conf"_s));
        const bool taken = refused.isEmpty();
        QCOMPARE(m_told.join(u' '), taken ? u"falseConfiguration imported!"_s : u"falseUnable to import config!!"_s);
        const QStringList log = m_session->log.mid(m_session->log.size() - 2);
        QCOMPARE(log.last(), taken ? u"[APP] Config imported successfully!"_s : u"[APP] Unable to import config!"_s);
        QVERIFY2(taken || log.first() == "[APP] "_L1 + refused, qPrintable(log.first()));
        QTEST(int{sensors()->acquisitionPeriod()}, "period");
        QCOMPARE(manager().board()->firmwareVersion(), u"1,SW1.4.0"_s);
    }

    void importOfWhatCannotBeReadIsThatOfAnEmptyFile()
    {
        write(path(u"secret.conf"_s), "AT+PACQ=61\n");
        QVERIFY(QFile::setPermissions(path(u"secret.conf"_s), {}));
        for (const QString &name : {u"secret.conf"_s, u"nowhere"_s, u"."_s, u"pipe"_s}) {
            const QString reason = name == "secret.conf"_L1 ? qt_error_string(EACCES) : u"which is no file"_s;
            QTest::ignoreMessage(QtCriticalMsg, qPrintable("Unable to read "_L1 + path(name) + u' ' + reason));
            m_told.clear();
            asNobody([&] { manager().importConfig(path(name)); });
            QCOMPARE(m_told.join(u' '), u"falseConfiguration imported!"_s);
            QCOMPARE(sensors()->acquisitionPeriod(), 3600);
        }
    }

    void exportToAFolderWithoutPermissionLeavesTheOldFile()
    {
        const QString file = path(u"locked/old.conf"_s);
        QVERIFY(QDir(m_folder.path()).mkdir(u"locked"_s));
        write(file, "old");
        QVERIFY(chmod(qPrintable(file), 0666) == 0 && chmod(qPrintable(path(u"locked"_s)), 0555) == 0);
        QTest::ignoreMessage(QtCriticalMsg, qPrintable("Unable to write "_L1 + file + u' ' + qt_error_string(EACCES)));
        generate(5);
        asNobody([&] { manager().exportConfig(file); });
        QVERIFY(chmod(qPrintable(path(u"locked"_s)), 0755) == 0);
        QCOMPARE(m_told.last(), u"falseConfiguration exported!"_s);
        QCOMPARE(contentOf(file), QByteArray("old"));
        QCOMPARE(QDir(path(u"locked"_s)).entryList(QDir::Files | QDir::Hidden), QStringList(u"old.conf"_s));
    }

    void exportIsItsOwnersAndAFailedOneLeavesTheOldFile()
    {
        generate(5);
        const QString good = path(u"old.conf"_s);
        write(good, "old");
        QVERIFY(QFile::setPermissions(good, QFile::Permissions(0x6444)));
        const auto entries = QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
        const rlimit full{2, RLIM_INFINITY};
        const rlimit free{RLIM_INFINITY, RLIM_INFINITY};
        for (const QString &target :
             {good, good + "/below.conf"_L1, m_folder.path(), path(u"pipe"_s), u"http://x/y"_s}) {
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"^Unable to write"_s));
            QVERIFY(setrlimit(RLIMIT_FSIZE, &full) == 0);
            manager().exportConfig(target);
            QVERIFY(setrlimit(RLIMIT_FSIZE, &free) == 0);
            QCOMPARE(m_told.last(), u"falseConfiguration exported!"_s);
            QCOMPARE(m_session->log.last(), u"[APP] Config exported successfully!"_s);
            QCOMPARE(contentOf(good), QByteArray("old"));
        }
        QCOMPARE(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System), entries);
        for (const QString &target : {good, path(u"new.conf"_s)}) {
            manager().exportConfig(target);
            QVERIFY(contentOf(target).endsWith("\r\nAT+RST=\r\n"));
            QCOMPARE(QFile::permissions(target) & 0x0fff, QFile::ReadUser | QFile::WriteUser);
        }
    }

    void sessionThatEndsDuringADownloadEndsTheExport()
    {
        const QString file = path(u"partial.conf"_s);
        QTest::ignoreMessage(QtCriticalMsg, "The exported configuration is not complete");
        manager().exportConfig(file); // there are no bulletins to be had
        QCOMPARE(m_told.join(u' '),
                 u"true falseUnable to set Tx profile configuration!! falseConfiguration exported!"_s);
        QVERIFY(contentOf(file).contains("\nAT+UDATE=") && !contentOf(file).contains("PREPASS_EN"));
        write(file, "old");
        m_server.serve({}, {}); // silence
        QTimer::singleShot(100, &manager(), [this] {
            manager().disconnect();
            QVERIFY(m_session->connectTo(ZepBoard::RANGER));
            QCOMPARE(requestedWords().constFirst(), u"PING"_s); // asked of the device, not written to a file
            m_server.serve("500 No", "no");
            m_told.clear();
        });
        QTest::ignoreMessage(QtCriticalMsg, "The session ended during an export: nothing was written");
        manager().exportConfig(file);
        QCOMPARE(contentOf(file), QByteArray("old"));
        QVERIFY(m_told.isEmpty() && !manager().processingData());
    }

    void thresholdOfTenThousandDigitsIsSentAndTold()
    {
        sensors()->setThresholdValues(SensorModel::ACCELEROMETER, QString(10000, u'9'));
        QVERIFY(manager().setSensorsConfig());
        QVERIFY(m_session->peer.requests().contains("AT+ALRT_ACC=0,"_L1 + QString(10000, u'9')));
        answer(u"ALRT_ACC"_s, {"+ALRT_ACC=1,"_L1 + QString(10000, u'8')});
        manager().getSensorsConfig();
        QCOMPARE(sensors()->sensorMap()[SensorModel::ACCELEROMETER]->thresholdValues(), QString(10000, u'8'));
    }

    void listsTellWhatIsAcquiredAndBoardsWithoutSensorsIgnoreThem()
    {
        for (const char *line :
             {"+PACQ_SENS=0,0,0,0,0,0,0", "+ALRT_SENS=1,0,1,0,|,0,1", "+ALRT_PB=1", "+ALRT_LIGHT=1,-5,--"}) {
            m_session->peer.say(line);
        }
        sensors()->setThresholdValues(SensorModel::ACCELEROMETER, u"NA"_s);
        QTRY_COMPARE(sensors()->index(SensorModel::LIGHT).data(SensorModel::ThresholdValuesRole), u"-5,--"_s);
        QVERIFY(manager().setSensorsConfig());
        QCOMPARE(
            m_session->peer.requests().join(u' ').remove(u"AT+"_s),
            u"ALRT_LIGHT=1,-5,-- ALRT_ACC=0 ALRT_DRYC=0,1 ALRT_PB=1 PACQ_SENS=1,0,1,0,0,0,1 ALRT_SENS=1,0,1,0,0,0,1 "
            "PACQ=3600"_s);
        manager().disconnect();
        QVERIFY(m_session->connectTo(ZepBoard::ZEP2));
        m_session->peer.forgetRequests();
        m_session->peer.say("+PACQ_SENS=1");
        m_session->peer.say("+ALRT_LIGHT");
        QTRY_VERIFY(m_session->log.contains(u"[ZEP] +ALRT_LIGHT"_s));
        manager().getSensorsConfig();
        QVERIFY(manager().setSensorsConfig() && m_session->peer.requests().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestConfiguration)
#include "tst_configuration.moc"
