// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Aborts.h"
#include "Criticals.h"
#include "HttpServer.h"
#include "LoRaConnectivity.h"
#include "PrepassProfile.h"
#include "SatelliteAopModel.h"
#include "ScriptedSession.h"

#include <QDir>
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
/// As a Ranger's is exported that predicts its passes, with values that differ from the defaults and from each other.
const QByteArray whole = QByteArray(R"(AT+ALRT_LIGHT=1,-5,4294967295
AT+ALRT_ACC=0,99999999999999999999
AT+ALRT_DRYC=1,0
AT+ALRT_PB=1
AT+PACQ_SENS=0,1,0,1,1,0,1
AT+ALRT_SENS=0,1,0,1,1,0,1
AT+PACQ=65535
AT+POS=-43.5612,179.5
AT+UDATE=2031-03-05T23:58:30Z
AT+AOP=7,2026-01-07T09:05:01Z,7195.65,98.7,344.1,-25.3,101.4,-1.9
AT+AOP=F,2026-01-08T19:45:59Z,7000.5,97.6,0.5,-24.25,100.5,0.5
AT+PREPASS_EN=1
AT+ZEP_REDUN=255
AT+PREPASS_CFG=-43.5612,179.5,2031-03-05T23:58:30Z,2031-03-14T23:58:30Z,12.5,90,7,1000,5,30
AT+LORA_EN=1
AT+LORA_AEUI=01,23,45,67,89,ab,cd,ef
AT+LORA_AKEY=00,11,22,33,44,55,66,77,88,99,aa,BB,cc,DD,ee,FF
AT+LORA_ACK=0
AT+LORA_REDUN=6
AT+RST=
)")
                             .replace("\n", "\r\n");

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
    [[nodiscard]] LoRaConnectivity *lora() { return tx()->loraConfig(); }
    [[nodiscard]] SensorModel *sensors() { return manager().board()->sensorListModel(); }
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

    void importFile(const QByteArray &content)
    {
        write(path(u"import.conf"_s), content);
        manager().importConfig(QUrl::fromLocalFile(path(u"import.conf"_s)).toString());
    }

    /// The clock, which runs on, reads the time of the whole one.
    [[nodiscard]] QByteArray exported()
    {
        manager().exportConfig(path(u"export.conf"_s));
        const QString text = QString::fromUtf8(contentOf(path(u"export.conf"_s)));
        return QString(text).replace(QRegularExpression(u"23:58:[0-9]{2}Z"_s), u"23:58:30Z"_s).toUtf8();
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
        QTest::addColumn<QString>("told");
        const auto rows = [](const QString &way, const QString &words, const QString &told) {
            for (const QString &word : words.split(u' ')) {
                QTest::addRow("%s %s", qPrintable(word), qPrintable(way)) << way << "true"_L1 + told;
            }
        };
        const QString none;
        const QString sensorsFail = u" falseUnable to set sensor configuration!!"_s;
        const QString profileFails = u" falseUnable to set Tx profile configuration!!"_s;
        const QString resetFails = u" falseUnable to reset device!!"_s;
        const QString restored = u" falseConfiguration uploaded!"_s;
        rows(u"refuses"_s, u"ALRT_LIGHT ALRT_PB PACQ_SENS ALRT_SENS PACQ"_s, sensorsFail);
        rows(u"refuses"_s, u"POS UDATE AOP PREPASS_EN ZEP_REDUN"_s, profileFails);
        rows(u"refuses"_s, u"PREPASS_CFG"_s, u" falseUnable to set Prepass configuration!!"_s);
        rows(u"refuses"_s, u"LORA_EN LORA_AEUI LORA_AKEY LORA_ACK"_s, none); // what becomes of LoRa is not looked at
        rows(u"refuses"_s, u"RST"_s, resetFails);
        rows(u"resets"_s, u"PACQ"_s, restored + sensorsFail); // which is no answer: the time-out strikes
        rows(u"resets"_s, u"RST"_s, restored + resetFails);
        // Cancelled is what comes next: of the bulletins another, and after the last nothing but the report.
        rows(u"sleeps"_s, u"ALRT_LIGHT"_s, sensorsFail);
        rows(u"sleeps"_s, u"PACQ AOP"_s, profileFails);
        rows(u"sleeps"_s, u"LORA_EN"_s, resetFails);
        rows(u"sleeps"_s, u"RST"_s, none);
        // Each time something else would be asked of the board that is gone.
        rows(u"is unplugged"_s, u"ALRT_LIGHT PACQ UDATE AOP ZEP_REDUN PREPASS_CFG LORA_EN LORA_REDUN RST"_s,
             u" false"_s);
        rows(u"is left"_s, u"ALRT_LIGHT AOP LORA_EN RST"_s, u" false"_s);
    }

    void uploadThatFailsAtACommandLeavesNothingBusy()
    {
        QFETCH(QString, way);
        QFETCH(QString, told);
        const QString word = QString(QTest::currentDataTag()).section(u' ', 0, 0);
        if (way == "is unplugged"_L1) {
            allowComplaintsOfTheWire();
        }
        importFile(whole);
        m_told.clear();
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
        m_told.removeDuplicates();
        QCOMPARE(m_told.join(u' '), told);
        QCOMPARE(manager().processingData(), m_told.last() == "true"_L1);
        QCOMPARE(!manager().board(), way == "is unplugged"_L1);
        if (way != "is left"_L1) {
            const QString last = word == "LORA_EN"_L1 ? u"LORA_REDUN"_s : word;
            const QString end = told == "true"_L1 && word != "RST"_L1 ? last + " RST"_L1 : word;
            QVERIFY2(requestedWords().join(u' ').endsWith(end), qPrintable(requestedWords().join(u' ')));
        }
        if (way == "refuses"_L1) {
            const bool isSilent = u"POS PREPASS_EN LORA_EN"_s.contains(word);
            QCOMPARE(m_session->log.filter(u"[APP] Unable"_s).isEmpty(), isSilent);
            return; // what is left busy, the other ways show
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
        m_session->peer.forgetRequests();
        manager().uploadConfig();
        QTRY_COMPARE(m_told.join(u' '), u"true falseConfiguration uploaded!"_s);
        QStringList requested = requestedWords();
        requested.removeDuplicates(); // a bulletin for each satellite
        QCOMPARE(requested.join(u' '),
                 u"ALRT_LIGHT ALRT_ACC ALRT_DRYC ALRT_PB PACQ_SENS ALRT_SENS PACQ POS UDATE AOP PREPASS_EN ZEP_REDUN "
                 "PREPASS_CFG LORA_EN LORA_AEUI LORA_AKEY LORA_ACK LORA_REDUN RST"_s);
    }

    void cancelledWakeUpWritesNothingAndAsksAgain()
    {
        manager().board()->setIsAwake(false);
        onWakeUpQuestion(&manager(), &ZepManager::cancelModuleRequest);
        QSignalSpy asked(&manager(), &ZepManager::userActionRequested);
        manager().uploadConfig();
        manager().getConfig();
        QCOMPARE(m_told.join(u' '), u"true false true false"_s);
        manager().requestCustomCmd(u"AT+ID=?"_s);
        QCOMPARE(asked.count(), 3); // each time anew
        QCOMPARE(m_session->log.count(u"[APP] Request has been cancelled"_s), 3);
        QCOMPARE(m_session->log.count(u"[APP] AT+ID=?"_s), 1); // logged, though it never left
        manager().board()->setIsAwake(true);
        manager().requestCustomCmd(u"  AT+FW=?\n"_s);
        QCOMPARE(m_session->peer.requests(), QStringList(u"AT+FW=?"_s)); // the first that the device hears of

        manager().board()->setIsAwake(false);
        manager().cancelModuleRequest(); // by a dialog that outlived its wait
        onWakeUpQuestion(&m_session->peer, [this] { m_session->peer.say("RANGER -- BUTTON PUSHED"); });
        manager().requestCustomCmd(u"AT+FW=?"_s);
        QCOMPARE(m_session->peer.requests().size(), 2);
    }

    void readingGoesOnPastWhatIsRefusedAndKeepsTheOldValues()
    {
        importFile(whole);
        lora()->setDevEui(u"0123456789ABCDEF"_s);
        const QStringList words = ScriptedSession::questionsToARanger().split(u' ');
        for (const QString &word : words) {
            answer(word, {u"+ERROR=5"_s});
        }
        m_told.clear();
        manager().getConfig();
        QCOMPARE(m_told.join(u' '), u"true false"_s);
        QCOMPARE(requestedWords(), words);
        QCOMPARE(m_session->log.filter(u"[APP] Unable to get "_s).size(), words.size());
        QCOMPARE(exported(), whole);
        QCOMPARE(lora()->devEui(), u"0123456789ABCDEF"_s);
    }

    void everyValueSurvivesItsFileAndNothingIsAsked()
    {
        manager().board()->setIsAwake(false);
        QByteArray other = whole; // with what is switched off left out
        for (const auto &[from, to] : {std::pair{"=0,1,0,1,1,0,1", "=1,0,1,0,0,1,0"},
                                       {"LIGHT=1,-5,4294967295", "LIGHT=0,1,2"},
                                       {"ACC=0,", "ACC=1,"},
                                       {"DRYC=1,0", "DRYC=0,1"},
                                       {"PB=1", "PB=0"},
                                       {"PREPASS_EN=1", "PREPASS_EN=0"},
                                       {"ZEP_REDUN=255", "ZEP_REDUN=9"},
                                       {"LORA_EN=1", "LORA_EN=0"},
                                       {"2031-03-05", "2020-02-29"}}) {
            QVERIFY(other.contains(from));
            other.replace(from, to);
        }
        other.remove(other.indexOf("AT+PREPASS_CFG"), other.indexOf("AT+LORA_EN") - other.indexOf("AT+PREPASS_CFG"));
        other.remove(other.indexOf("AT+LORA_AEUI"), other.indexOf("AT+RST") - other.indexOf("AT+LORA_AEUI"));
        for (const QByteArray &content : {whole, other, whole}) {
            importFile(content);
            QCOMPARE(m_told.last(), u"falseConfiguration imported!"_s);
            QCOMPARE(exported(), content);
        }
        tx()->prepassProfile()->setPosition({43.5612345, 0.00001});
        const QSignalSpy moved(tx()->prepassProfile(), &PrepassProfile::positionChanged);
        const QByteArray near = exported();
        QCOMPARE(moved.count(), 0); // no device has accepted anything
        tx()->prepassProfile()->setPosition({1, 1});
        importFile(near);
        QCOMPARE(tx()->prepassProfile()->position().latitude, 43.5612);
        QCOMPARE(tx()->prepassProfile()->position().longitude, 0.00001);
        QCOMPARE(m_session->peer.requests(), QStringList());
        QCOMPARE(m_session->log.filter(u"cannot be imported"_s), QStringList());
    }

    void exportNamesWhatAnImportWouldRefuse()
    {
        importFile(whole);
        sensors()->setThresholdValues(SensorModel::LIGHT, u"7"_s);
        lora()->setAppKey({});
        tx()->prepassProfile()->satelliteAopModel()->findByIdent(u'F')->date = {};
        m_session->log.clear();
        for (const char *word : {"ALRT_LIGHT", "AOP", "LORA_AKEY"}) {
            expectCritical(qPrintable("Unable to extract "_L1 + QLatin1String(word) + " data"_L1));
        }
        const QByteArray bytes = exported();
        QCOMPARE(bytes, QByteArray(whole)
                            .replace("=1,-5,4294967295", "=1,7")
                            .replace("F,2026-01-08T19:45:59Z", "F,")
                            .replace(QByteArray("00,11,22,33,44,55,66,77,88,99,aa,BB,cc,DD,ee,FF"), ""));
        const QString named = u"[APP] Exported entry cannot be imported: "_s;
        QCOMPARE(m_session->log.filter(named),
                 (QStringList{named + "AT+ALRT_LIGHT=1,7"_L1, named + "AT+AOP=F,,7000.5,97.6,0.5,-24.25,100.5,0.5"_L1,
                              named + "AT+LORA_AKEY="_L1}));
        expectCritical("Unable to extract ALRT_LIGHT data");
        importFile(bytes);
        QVERIFY(m_session->log.contains(u"[APP] Unable to parse configuration entry: AT+ALRT_LIGHT=1,7"_s));
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
        QTest::newRow("binary") << QByteArray(500, '\0') << entry + u' ' + QString(256, u'\uFFFD') + u'…' << 3600;
        QTest::newRow("endless") << "AT+FW=" + QByteArray(70000, 'x')
                                 << entry + " AT+FW="_L1 + QString(250, u'x') + u'…' << 3600;
    }

    void importStopsAtTheFirstLineThatIsNone()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, refused);
        allowComplaintsOfTheWire(); // of what it cannot read
        if (content.contains("ASSERT")) {
            expectCritical("ZEP ASSERT! ");
        }
        importFile(content);
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
            expectCritical(qPrintable("Unable to read "_L1 + path(name) + u' ' + reason));
            m_told.clear();
            asNobody([&] { manager().importConfig(path(name)); });
            QCOMPARE(m_told.join(u' '), u"falseConfiguration imported!"_s);
            QCOMPARE(sensors()->acquisitionPeriod(), 3600);
        }
    }

    void exportIsItsOwnersAndAFailedOneLeavesTheOldFile()
    {
        importFile(whole);
        const QString good = path(u"old.conf"_s);
        const QString locked = path(u"locked/old.conf"_s); // which may be written, but not replaced
        QVERIFY(QDir(m_folder.path()).mkdir(u"locked"_s));
        write(good, "old");
        write(locked, "old");
        QVERIFY(QFile::setPermissions(good, QFile::Permissions(0x6444)));
        QVERIFY(chmod(qPrintable(locked), 0666) == 0 && chmod(qPrintable(path(u"locked"_s)), 0555) == 0);
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::System;
        const auto entries = QDir(m_folder.path()).entryList(all);
        const rlimit full{2, RLIM_INFINITY};
        const rlimit free{RLIM_INFINITY, RLIM_INFINITY};
        for (const QString &target :
             {good, good + "/below.conf"_L1, m_folder.path(), path(u"pipe"_s), u"http://x/y"_s, locked}) {
            expectCritical(QRegularExpression(u"^Unable to write"_s));
            if (target == locked) {
                asNobody([&] { manager().exportConfig(target); });
            } else {
                QVERIFY(setrlimit(RLIMIT_FSIZE, &full) == 0);
                manager().exportConfig(target);
                QVERIFY(setrlimit(RLIMIT_FSIZE, &free) == 0);
            }
            QCOMPARE(m_told.last(), u"falseConfiguration exported!"_s);
            QCOMPARE(m_session->log.last(), u"[APP] Config exported successfully!"_s);
            QCOMPARE(contentOf(good) + contentOf(locked), QByteArray("oldold"));
        }
        QVERIFY(chmod(qPrintable(path(u"locked"_s)), 0755) == 0);
        QCOMPARE(QDir(m_folder.path()).entryList(all), entries);
        QCOMPARE(QDir(path(u"locked"_s)).entryList(QDir::Files | QDir::Hidden), QStringList(u"old.conf"_s));
        for (const QString &target : {good, path(u"new.conf"_s)}) {
            manager().exportConfig(target);
            QVERIFY(contentOf(target).endsWith("\r\nAT+RST=\r\n"));
            QCOMPARE(QFile::permissions(target) & 0x0fff, QFile::ReadUser | QFile::WriteUser);
        }
    }

    void sessionThatEndsDuringADownloadEndsTheExport()
    {
        const QString file = path(u"partial.conf"_s);
        expectCritical("Error: QNetworkReply::InternalServerError");
        expectCritical("The exported configuration is not complete");
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
        expectCritical("Error: QNetworkReply::OperationCanceledError");
        expectCritical("The session ended during an export: nothing was written");
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

    void sensorThatIsNoneIsRefusedOrFatal()
    {
        QSignalSpy changed(sensors(), &SensorModel::dataChanged);
        sensors()->setAlert(uchar(8), true);
        sensors()->setEnable(0, true); // no change
        QCOMPARE(changed.count(), 1);
        const QByteArray source = "src/models/SensorModel";
        verifyBounds(*sensors(), source, "sensor");
        verifyAborts("written name", source, "Invalid role value to update sensor model data",
                     [this] { sensors()->setData(sensors()->index(0), 1, SensorModel::NameRole); });
    }

    void firmwareBeforeTheLoraStackIsNotAsked()
    {
        manager().board()->setFirmwareVersion(u"1,SW1.3.9"_s);
        manager().getLoRaConfig();
        QVERIFY(!manager().setLoRaConfig());
        QCOMPARE(m_session->log.last(), u"[APP] LORA CONFIG: This board is not compatible with LoRa"_s);
        QCOMPARE(m_session->peer.requests(), QStringList());
    }

    void loraAnswersAreConfinedAndTheEndForgetsThemInSilence()
    {
        for (const char *text : {"EN=1", "REDUN=300", "DEUI=0a,1b,2c,3d,4e,5f,60,71",
                                 "AKEY=00,01,02,03,04,05,06,07,08,09,0A,0B,0C,0D,0E,0F", "ACK=0"}) {
            const QString line = "LORA_"_L1 + QLatin1String(text);
            answer(line.section(u'=', 0, 0), {u'+' + line});
        }
        manager().getConfig();
        QVERIFY(tx()->loraEnabled() && !lora()->ackEnabled());
        QCOMPARE(lora()->redundancy(), uchar(255));
        QCOMPARE(lora()->devEui(), u"0a1b2c3d4e5f6071"_s); // in the device's case
        QCOMPARE(lora()->appKey(), u"000102030405060708090A0B0C0D0E0F"_s);

        int told = 0;
        QObject listener; // ends with what it keeps
        for (auto changed :
             {&LoRaConnectivity::devEuiChanged, &LoRaConnectivity::appEuiChanged, &LoRaConnectivity::appKeyChanged,
              &LoRaConnectivity::ackEnabledChanged, &LoRaConnectivity::redundancyChanged}) {
            connect(lora(), changed, &listener, [&told] { ++told; }); // see above; clazy:exclude=lambda-in-connect
        }
        manager().disconnect();
        QVERIFY(lora()->devEui().isEmpty() && lora()->appKey().isEmpty());
        QVERIFY(lora()->ackEnabled() && lora()->redundancy() == 4);
        QCOMPARE(told, 0);
        lora()->setAckEnabled(true); // no change, and told all the same
        QCOMPARE(told, 1);

        QVERIFY(m_session->connectTo(ZepBoard::TBX)); // it reads no LoRa line into fields
        lora()->setDevEui(u"old"_s);
        lora()->setAppKey(u"old"_s);
        m_session->peer.say("+LORA_DEUI=1");
        m_session->peer.say("+LORA_AKEY");
        QTRY_COMPARE(m_session->log.last(), u"[APP] Invalid key value!"_s);
        QVERIFY(m_session->log.contains(u"[APP] Invalid EUI value!"_s));
        QCOMPARE(lora()->devEui() + lora()->appKey(), u"oldold"_s);
        QCOMPARE(LoRaConnectivity::toWireHex(u"0a1"_s), u"0a,1"_s);
    }
};

QTEST_GUILESS_MAIN(TestConfiguration)
#include "tst_configuration.moc"
