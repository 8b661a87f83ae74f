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

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {
const QStringList uploadWords =
    u"ALRT_LIGHT ALRT_ACC ALRT_DRYC ALRT_PB PACQ_SENS ALRT_SENS PACQ POS UDATE AOP PREPASS_EN "
    "ZEP_REDUN PREPASS_CFG LORA_EN LORA_AEUI LORA_AKEY LORA_ACK LORA_REDUN RST"_s.split(u' ');

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

    [[nodiscard]] QStringList requestedWords()
    {
        return m_session->peer.requests().replaceInStrings(QRegularExpression(u"^AT.|=.*"_s), QString());
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
        for (const Sensor *sensor : sensors()->sensorMap()) {
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
        QVERIFY(mkfifo(qPrintable(path(u"pipe"_s)), 0600) == 0);
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
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("line");
        const struct
        {
            const char *words;
            QString message;
            QString line;
        } stages[]{
            {"ALRT_LIGHT ALRT_ACC ALRT_DRYC ALRT_PB", u"set sensor configuration"_s, u"set sensor alert on RANGER"_s},
            {"PACQ_SENS", u"set sensor configuration"_s, u"enable/disable sensors on RANGER"_s},
            {"ALRT_SENS PACQ", u"set sensor configuration"_s, u"enable/disable sensor alerts on RANGER"_s},
            {"POS PREPASS_EN", u"set Tx profile configuration"_s, {}},
            {"UDATE", u"set Tx profile configuration"_s, u"set UTC date on RANGER"_s},
            {"AOP", u"set Tx profile configuration"_s, u"set AOP data"_s},
            {"ZEP_REDUN", u"set Tx profile configuration"_s, u"set Tx redundancy"_s},
            {"PREPASS_CFG", u"set Prepass configuration"_s, u"set prediction pass config"_s},
            {"LORA_EN", {}, {}},
            {"LORA_AEUI LORA_AKEY LORA_ACK LORA_REDUN", {}, u"set LoRa configuration"_s},
            {"RST", u"reset device"_s, u"reset RANGER"_s},
        };
        for (const auto &stage : stages) {
            for (const QByteArray &word : QByteArray(stage.words).split(' ')) {
                QTest::newRow(word) << stage.message << stage.line;
            }
        }
    }

    void uploadThatFailsAtACommandLeavesNothingBusy()
    {
        QFETCH(QString, message);
        QFETCH(QString, line);
        const QString word = QString::fromLatin1(QTest::currentDataTag());
        const auto at = uploadWords.indexOf(word);
        const QStringList ways{u"refuses"_s, u"sleeps"_s, u"resets"_s, u"is unplugged"_s, u"is left"_s};
        for (const QString &way : ways.first(at % 6 == 0 ? ways.size() : 1)) {
            init();
            generate(3);
            tx()->setSelectedProfile(TxManager::PREPASS);
            tx()->setLoraEnabled(true);
            const auto onAction = &ZepManager::userActionRequested;
            if (way == "sleeps"_L1) {
                disconnect(&manager(), onAction, nullptr, nullptr);
                connect(&manager(), onAction, &manager(), &ZepManager::cancelModuleRequest);
            }
            connect(manager().serialPort(), &SerialPortManager::serialError, &manager(), &ZepManager::disconnect);
            answer(word, way == "refuses"_L1  ? QStringList{u"+ERROR=5"_s}
                         : way == "sleeps"_L1 ? QStringList{u"RANGER -- SLEEP"_s, u"+OK"_s}
                         : way == "resets"_L1 ? QStringList{u"RANGER -- PARAMETERS RESTORED"_s}
                                              : QStringList());
            connect(&m_session->peer, &ScriptedPeer::requested, &manager(), [&](const QString &request) {
                if (way.startsWith(u"is "_s) && request.startsWith("AT+"_L1 + word + u'=')) {
                    m_session->peer.disconnect(&manager());
                    QTimer::singleShot(0, &manager(), [&] {
                        if (way == "is unplugged"_L1) {
                            m_session->peer.hangUp();
                        } else { // for another session, in the middle of the upload
                            answer(word, {u"+OK"_s});
                            manager().disconnect();
                            QVERIFY(m_session->connectTo(ZepBoard::RANGER));
                        }
                    });
                }
            });
            manager().uploadConfig();
            QStringList requested = requestedWords();
            requested.removeDuplicates(); // each satellite is tried
            if (way == "refuses"_L1) {
                QStringList sent = word == "LORA_EN"_L1 ? uploadWords : uploadWords.first(at + 1);
                sent << (message.isEmpty() && word != "LORA_EN"_L1 ? QStringList{u"RST"_s} : QStringList());
                QCOMPARE(requested, sent);
                QCOMPARE(m_told.last(), message.isEmpty() ? u"true"_s : "falseUnable to "_L1 + message + "!!"_L1);
                QStringList lines = m_session->log.filter(u"Unable"_s);
                lines.removeDuplicates();
                QCOMPARE(lines.join(u' '), line.isEmpty() ? QString() : "[APP] Unable to "_L1 + line);
            } else {
                QCOMPARE(manager().processingData(), way == "sleeps"_L1 && word == "RST"_L1); // its report is awaited
                QVERIFY(way != "sleeps"_L1 || requested.last() == word); // cancelled: nothing more is sent
                QCOMPARE(!manager().board(), way == "is unplugged"_L1);
            }
            if (!manager().board()) {
                m_session->peer.plugAgain();
            }
            answer(word, {u"+OK"_s});
            answer(u"RST"_s, {u"+OK"_s, u"RANGER -- PARAMETERS RESTORED"_s});
            if (way != "refuses"_L1) {
                manager().disconnect(); // and with the session what still was awaited
                QVERIFY(!manager().processingData());
                disconnect(&manager(), onAction, nullptr, nullptr);
                QVERIFY(m_session->connectTo(ZepBoard::RANGER));
            }
            manager().uploadConfig();
            QTRY_COMPARE(m_told.last(), u"falseConfiguration uploaded!"_s);
        }
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
        for (const QString &name : {u"nowhere"_s, u"."_s, u"pipe"_s}) {
            manager().importConfig(path(name));
            QCOMPARE(m_told.last(), u"falseConfiguration imported!"_s);
        }
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
            QCOMPARE(requestedWords().first(), u"PING"_s); // asked of the device, not written to a file
            m_server.serve("500 No", "no");
            m_told.clear();
        });
        QTest::ignoreMessage(QtCriticalMsg, "The session ended during an export: nothing was written");
        manager().exportConfig(file);
        QCOMPARE(contentOf(file), QByteArray("old"));
        QVERIFY(m_told.isEmpty() && !manager().processingData());
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
