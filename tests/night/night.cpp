// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// night SEED...: for each seed, twelve hours of virtual time with each board and profile. The seed decides what the
// device, the clock and the user do. The first violation of a rule ends the process with the last lines of the log.

#include "Identity.h"
#include "PayloadModel.h"
#include "PeriodicProfile.h"
#include "PrepassModel.h"
#include "PrepassProfile.h"
#include "SatelliteAopModel.h"
#include "VirtualDevice.h"
#include "ZepManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMetaEnum>
#include <QSerialPortInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 second = 1000; // ms, as all that follows
constexpr qint64 minute = 60 * second;
constexpr qint64 hour = 60 * minute;
constexpr qint64 length = 12 * hour;
constexpr qint64 idleMax = 10 * second; // the table of passes is walked by one pass a second
constexpr qint64 lostLineMax = 500;
constexpr qint64 lastAnswerTimeout = 6 * second;
constexpr qint64 pauseAfterRequest = 10;
constexpr qint64 patience = 3 * minute; // of the user, with a Tx that stays without a result
constexpr int requestsPerMinuteMax = 150;
constexpr int passesUntilQueuedAgain = 2;
constexpr qsizetype shownLines = 40;
const QDateTime evening(QDate(2026, 1, 7), QTime(20, 0), Qt::UTC);

struct Kind
{
    ZepBoard::Module module;
    TxManager::Profile profile; // a Ranger makes no Tx, but reports whether it predicts passes
};

constexpr Kind kinds[] = {
    {ZepBoard::ZEP1, TxManager::PERIODIC},          {ZepBoard::ZEP1, TxManager::PREPASS},
    {ZepBoard::ZEP2, TxManager::PERIODIC},          {ZepBoard::ZEP2, TxManager::PREPASS},
    {ZepBoard::TBX, TxManager::PERIODIC},           {ZepBoard::TBX, TxManager::PREPASS},
    {ZepBoard::RANGER, TxManager::PERIODIC},        {ZepBoard::RANGER, TxManager::PREPASS_ON_MODULE},
    {ZepBoard::ZEP2, TxManager::PREPASS_ON_MODULE}, {ZepBoard::TBX, TxManager::PREPASS_ON_MODULE},
};

VirtualTime *virtualTime = nullptr;
qint64 beginning = 0;   // of the night, in virtual time
QStringList lastLines;  // the name of the night, then what happened, with the time since its beginning
std::size_t digest = 0; // of all that happened

qint64 now()
{
    return virtualTime->now() - beginning;
}

void note(const QString &text)
{
    const QString time = QTime::fromMSecsSinceStartOfDay(static_cast<int>(now())).toString(u"hh:mm:ss.zzz"_s);
    lastLines << time + u' ' + QString(text).remove(QDir::currentPath());
    digest = digest * 31 + qChecksum(lastLines.last().toUtf8());
    if (lastLines.size() > shownLines) {
        lastLines.removeAt(1);
    }
}

void onMessage(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtFatalMsg) {
        note("VIOLATION: "_L1 + message);
        std::fprintf(stderr, "\n%s\n", qPrintable(lastLines.join(u'\n')));
    }
}

void require(bool condition, const char *what, const QString &detail = {})
{
    if (!condition) {
        qFatal("%s: %s", what, qPrintable(detail));
    }
}

/// What must be true, whatever the device, the clock and the user do.
class Rules
{
public:
    Rules(Kind kind, ZepManager *manager, VirtualDevice *device)
        : m_kind(kind), m_manager(manager), m_device(device), m_schedule(m_tx->findChild<QTimer *>("scheduleTimer"))
    {
        device->onRequest = [this](const QString &request) { onWritten(request); };
        device->onLine = [this](const QString &line) {
            m_delivered << line;
            m_deliveredAt = now();
        };
        QObject::connect(manager->logger(), &Logger::logCreated, manager, [this](const QString &line) {
            note(line);
            const QString message = line.section(u"] "_s, 1); // behind the time
            message.startsWith("[APP]"_L1) ? onLogged(message.mid(6)) : onProcessed(message.mid(6));
        });
        QObject::connect(m_tx, &TxManager::sequenceCompleted, manager, [this] { isComplete = true; });
        QObject::connect(m_tx, &TxManager::txErrorOccured, manager, [this](const QString &error) {
            require(++m_errors == 1, "a sequence reports two errors", error);
            require(!error.contains("No more prepass"_L1) ||
                        now() - std::max(m_askedUntil, m_checkedAt) <= lastAnswerTimeout,
                    "the wait at the end of the table is too long");
        });
    }

    /// To be called while no request is under way.
    void check()
    {
        m_checkedAt = now();
        require(m_delivered.isEmpty() || now() - m_deliveredAt <= second, "a line is not processed",
                m_delivered.value(0));
        const bool isLost = m_device->isLineLost();
        require(!isLost || (!m_schedule->isActive() && !m_tx->ackPending()), "a lost line is waited for");

        // In PREPASS_ON_MODULE the schedule must be armed: a pass ends without a result, too.
        const bool isAwaited = m_tx->ackPending() && m_kind.profile != TxManager::PREPASS_ON_MODULE;
        require(!isAwaited || !m_isSettled, "a result or an error did not settle its Tx");
        const bool isScheduled = m_schedule->isActive() && (m_schedule->remainingTime() <= minute || !isInPass());
        if (!m_tx->sequenceRunning() || isComplete || isLost || isScheduled || isAwaited) {
            m_busyAt = now();
        }
        require(now() - m_busyAt <= idleMax, "the sequence runs and waits for nothing");
    }

    void startSequence(uchar repetitionCount)
    {
        isComplete = false;
        m_errors = 0;
        m_passesSinceRefusal = -1;
        m_tx->start(repetitionCount);
        m_busyAt = now();
    }

    void stopSequence()
    {
        m_tx->stop();
        require(!m_tx->sequenceRunning(), "the sequence goes on after Stop");
    }

    void endSession()
    {
        stopSequence();
        const qint64 before = now();
        m_manager->disconnect();
        require(!m_tx->sequenceRunning() && !m_tx->ackPending(), "a session leaves a sequence behind");
        const qint64 waited = now() - before;
        require(waited == 0 || waited == lastAnswerTimeout || m_deliveredAt == now() ||
                    m_device->lostAt == virtualTime->now(),
                "the wait for the last result was not exact", QString::number(waited));
        m_delivered.clear();
    }

    bool isComplete = false;
    int requests = 0;
    int timeouts = 0;
    int results = 0;
    int repetitions = 0;

private:
    /// Whether a pass of the table has begun, that has room for a Tx each minute.
    [[nodiscard]] bool isInPass() const
    {
        const qulonglong next = m_tx->nextPassIdx();
        return m_kind.profile == TxManager::PREPASS && next > 0 &&
               m_tx->prepassListModel()->getEndUtc(next - 1) > m_tx->utcDateTime().addMSecs(2 * minute);
    }

    void onProcessed(const QString &line)
    {
        require(m_delivered.value(0, u"nothing"_s) == line, "a line is out of order, or not of the device");
        m_delivered.removeFirst();
        const bool isResult = line.startsWith("+TX="_L1);
        results += isResult;
        m_isSettled |= !m_isAsking && (isResult || line.startsWith("+ERROR="_L1));
        if (m_isAsking && line.contains(u'+')) {
            m_isAsking = false;
            m_askedUntil = now() + pauseAfterRequest;
        }
    }

    void onLogged(const QString &message)
    {
        if (message.startsWith("AT+"_L1)) {
            onRequest(message);
        } else if (message == "AT command request timeout!"_L1) {
            onTimeout();
        } else if (message.startsWith("--- Tx SEQUENCE COMPLETE"_L1)) {
            ++repetitions;
        } else if (message == "Unable to write Tx command"_L1 && m_kind.profile == TxManager::PREPASS_ON_MODULE) {
            m_passesSinceRefusal = 0;
        }
    }

    void onRequest(const QString &request)
    {
        require(m_requestMayFail || m_request.isEmpty(), "a request was logged and not written", m_request);
        m_request = request;
        m_requestedAt = now();
        m_requestMayFail = m_device->isLineLost() || !m_manager->board()->isAwake();
        m_requestsOfMinute = m_minute == now() / minute ? m_requestsOfMinute + 1 : 1;
        m_minute = now() / minute;
        ++requests;
        require(m_requestsOfMinute <= requestsPerMinuteMax, "the device is flooded with requests");

        if (request.startsWith("AT+TX="_L1) || request.startsWith("AT+TXDATA="_L1)) {
            require(m_tx->sequenceRunning(), "a Tx without a sequence");
            m_passesSinceRefusal = -1;
        } else if (request.startsWith("AT+NEXTPASS="_L1) && m_passesSinceRefusal >= 0 && m_tx->sequenceRunning()) {
            require(++m_passesSinceRefusal <= passesUntilQueuedAgain, "a refused payload is not queued again");
        }
    }

    void onWritten(const QString &request)
    {
        require(!m_device->isLineLost(), "a request is written to a lost line", request);
        require(m_request == request, "a request is written and was not logged", request);
        m_request.clear();
        m_requestedAt = now();
        m_isAsking = true;
        m_isSettled &= !request.startsWith("AT+TX="_L1);
    }

    void onTimeout()
    {
        ++timeouts;
        m_isAsking = false;
        m_askedUntil = now() + pauseAfterRequest;
        const qint64 waited = now() - m_requestedAt;
        const qint64 lostFor = virtualTime->now() - m_device->lostAt;
        require(m_device->isLineLost() ? std::min(waited, lostFor) <= lostLineMax
                                       : waited == second || waited == 5 * second || waited == 15 * second,
                "a request times out late or early", QString::number(waited));
    }

    Kind m_kind;
    ZepManager *m_manager;
    VirtualDevice *m_device;
    TxManager *m_tx = m_manager->tx();
    QTimer *m_schedule;
    QStringList m_delivered; // lines of the device that are not processed yet
    qint64 m_deliveredAt = 0;
    QString m_request; // logged, and not written yet
    bool m_requestMayFail = false;
    bool m_isAsking = false;
    bool m_isSettled = false; // a result or an error came after the last Tx was answered
    qint64 m_requestedAt = 0;
    qint64 m_minute = 0;
    int m_requestsOfMinute = 0;
    int m_passesSinceRefusal = -1; // of a payload that the module refused to queue; -1 without one
    int m_errors = 0;              // that the sequence has reported
    qint64 m_checkedAt = 0;        // when no request and no wait was under way
    qint64 m_askedUntil = 0;       // when the last request returned
    qint64 m_busyAt = 0;           // when the sequence last waited for something, or was over
};

/// One night: the clock of the computer, and a user who waits for each request.
class Night
{
public:
    Night(quint32 seed, Kind kind)
        : m_kind(kind), m_random(seed), m_manager(nullptr, m_device), m_rules(kind, &m_manager, m_device)
    {
        m_device->tx = m_tx;
        QObject::connect(m_device, &SerialPortManager::serialError, &m_manager, [this] {
            m_hasError = true;
            m_nextActionAt = now() + 5 * second;
        });
        QObject::connect(&m_manager, &ZepManager::connected, &m_manager, [this] { m_isConnected = true; });
        QObject::connect(&m_manager, &ZepManager::userActionRequested, &m_manager, [this] {
            QTimer::singleShot(2000 + draw(20000), &m_manager,
                               [this] { chance(85) ? m_device->pushButton() : m_manager.cancelModuleRequest(); });
        });
        QObject::connect(m_tx, &TxManager::currentIndexUpdated, &m_manager, [this](uchar row) { m_currentRow = row; });
        m_tx->addPayloadItem({});
        m_tx->addPayloadItem({});
        importTable();
        disturb();
    }

    void play()
    {
        while (now() < length) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            m_rules.check();
            if (now() >= m_nextActionAt) {
                m_nextActionAt = now() + minute + draw(10 * minute);
                act();
            }
        }
        m_rules.endSession();
        require(m_rules.requests > 100 && (m_kind.module == ZepBoard::RANGER || m_rules.results > 10), "a quiet night");
        std::printf("%d requests, %d time-outs, %d results, %d repetitions, digest %zx\n", m_rules.requests,
                    m_rules.timeouts, m_rules.results, m_rules.repetitions, digest);
    }

private:
    [[nodiscard]] int draw(qint64 count) { return m_random.bounded(static_cast<int>(count)); }
    [[nodiscard]] bool chance(int percent) { return draw(100) < percent; }

    void disturb()
    {
        QTimer::singleShot(static_cast<int>(minute) + draw(6 * minute), Qt::PreciseTimer, &m_manager, [this] {
            require(now() < length + hour, "a wait does not end");
            disturb();
            if (chance(80)) {
                return m_device->misbehave();
            }
            const bool isSuspended = chance(40);
            const qint64 step =
                (2 * second + draw(chance(30) ? 3 * hour : minute)) * (isSuspended || chance(50) ? 1 : -1);
            note((isSuspended ? u"the computer was suspended for %1 ms"_s : u"the date moves by %1 ms"_s).arg(step));
            virtualTime->setDate(virtualTime->utcNow().addMSecs(step));
            m_device->setDate(m_device->date().addMSecs(isSuspended ? step : 0));
        });
    }

    void act()
    {
        const bool isStopping = !m_tx->sequenceRunning() && m_tx->ackPending();
        if (m_hasError || (m_isConnected && chance(3)) || (isStopping && now() - m_stoppedAt > patience)) {
            m_rules.endSession();
            m_hasError = m_isConnected = false;
        }
        if (!m_isConnected) {
            m_nextActionAt = now() + 10 * second;
            m_manager.connect(m_kind.module, u"port"_s, u"Default"_s);
        } else if (m_tx->sequenceRunning()) {
            actWhileRunning();
        } else if (!isStopping) {
            m_nextActionAt = now() + second + draw(minute);
            actWhileIdle();
        }
    }

    void actWhileRunning()
    {
        const int rows = m_tx->payloadListModel()->rowCount();
        if (m_rules.isComplete || chance(m_kind.profile == TxManager::PERIODIC ? 20 : 4)) {
            m_rules.stopSequence();
            m_stoppedAt = now();
        } else if (rows < 5 && (m_kind.profile == TxManager::PREPASS_ON_MODULE || !m_tx->ackPending())) {
            m_tx->addPayloadItem({});
        } else if (rows - 1 > m_currentRow) {
            editPayload(rows - 1);
        }
    }

    /// Once in a while a malformed one.
    void editPayload(int row)
    {
        PayloadModel *payloads = m_tx->payloadListModel();
        const bool wantsAck = m_kind.module == ZepBoard::ZEP2 && m_kind.profile != TxManager::PREPASS && chance(40);
        const QString end = chance(5) ? u"AB"_s : wantsAck ? u"ABCD"_s : u"ABCDEF01"_s;
        payloads->setData(payloads->index(row), QString::number(10000000 + draw(80000000)) + end,
                          PayloadModel::MessageRole);
        payloads->setData(payloads->index(row), wantsAck, PayloadModel::OptionAckRole);
    }

    void actWhileIdle()
    {
        PayloadModel *payloads = m_tx->payloadListModel();
        const bool isRanger = m_kind.module == ZepBoard::RANGER;
        switch (draw(14)) {
        case 0:
            return m_manager.getHwInfo();
        case 1:
            return m_manager.getSatelliteNextPass();
        case 2:
            return void(m_manager.setAopDataAndConstellationStatus());
        case 3:
            return m_tx->prepassProfile()->satelliteAopModel()->clear();
        case 4:
            serveBulletins();
            return void(m_tx->prepassProfile()->downloadAopData());
        case 5:
            return m_manager.requestCustomCmd(u"AT+TXFIFO=?"_s);
        case 6:
            return editPayload(draw(payloads->rowCount()));
        case 7:
            return payloads->rowCount() > 2 ? payloads->remove(0) : void();
        case 8:
            return importTable();
        default:
            m_nextActionAt += (isRanger ? 5 : 10) * minute;
            return !isRanger ? start() : chance(50) ? m_manager.getConfig() : m_manager.uploadConfig();
        }
    }

    void start()
    {
        PayloadModel *payloads = m_tx->payloadListModel();
        for (int row = 0; row < payloads->rowCount(); ++row) {
            if (payloads->getStatus(static_cast<uchar>(row)) == Payload::ERROR && chance(80)) {
                editPayload(row);
            }
        }
        if (m_tx->selectedProfile() != m_kind.profile) {
            return m_tx->setSelectedProfile(m_kind.profile);
        }
        m_tx->periodicProfile()->setRedundancy(static_cast<uchar>(1 + draw(3)));
        m_currentRow = 0;
        m_rules.startSequence(static_cast<uchar>(1 + draw(3)));
    }

    void importTable()
    {
        QByteArray table = "Satellite,Start date/time,Middle date/time,End date/time,Duration,Middle elevation,"
                           "Start azimuth,Middle azimuth,End azimuth\n";
        QDateTime start = m_tx->utcDateTime().addSecs(120);
        const int count = chance(50) ? 3 : 40;
        for (int pass = 0; pass < count; ++pass, start = start.addSecs(600 + draw(4000))) {
            const QByteArray date = start.toString(u"MM-dd-yyyy hh:mm:ss"_s).toLatin1();
            table += "SAT," + date + ',' + date + ',' + date + ",00:10:00,45,0,0,0\n";
        }
        write(u"passes.csv"_s, table);
        m_tx->importPrepassData(QDir::current().filePath(u"passes.csv"_s));
    }

    /// What the web service answers from now on: nothing, an error, or a bulletin.
    void serveBulletins()
    {
        write(u"bulletins"_s, chance(30)   ? ""
                              : chance(30) ? R"({"errors": 1})"
                                           : R"({"satellitesInformation": [{
            "satellite": "ONE", "aop": {"date": "2026-01-07_00:00:00", "semiMajorAxis": 7195.5, "inclination": 98.5},
            "broadcastedStatus": {"fleetfeedIdent": "A", "downlinkStatus": "ON", "operatingStatus": "ON"}}]})");
    }

    static void write(const QString &name, const QByteArray &content)
    {
        QFile file(name);
        require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "cannot write", name);
    }

    Kind m_kind;
    QRandomGenerator m_random;
    VirtualDevice *m_device =
        new VirtualDevice(m_kind.module, m_kind.profile == TxManager::PREPASS_ON_MODULE, virtualTime, &m_random);
    ZepManager m_manager;
    TxManager *m_tx = m_manager.tx();
    Rules m_rules;
    qint64 m_nextActionAt = 0;
    qint64 m_stoppedAt = 0;
    int m_currentRow = 0; // of the list of payloads, while a sequence runs
    bool m_hasError = false;
    bool m_isConnected = false;
};

template <typename Enum> QString nameOf(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(value));
}

} // namespace

// Replaces the library's: the ports of this machine do not matter, and finding them takes a quarter of the run.
QList<QSerialPortInfo> QSerialPortInfo::availablePorts()
{
    return {};
}

int main(int argc, char *argv[])
{
    virtualTime = VirtualTime::install();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(Identity::organization);
    QCoreApplication::setApplicationName(Identity::name);
    qInstallMessageHandler(onMessage);
    for (const QString &seed : QCoreApplication::arguments().mid(1)) {
        quint32 salt = 0;
        for (const Kind &kind : kinds) {
            const QTemporaryDir folder;
            QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
            require(QDir::setCurrent(folder.path()), "no folder to work in");
            {
                QSettings config(u"config.ini"_s, QSettings::IniFormat);
                config.setValue("Prepass/aopWebRequestUrl", "file://"_L1 + folder.filePath(u"bulletins"_s));
                config.setValue("Journal/enabled", false); // its thread needs real time
            }
            virtualTime->setDate(evening);
            beginning = virtualTime->now();
            digest = 0;
            lastLines = {u"seed %1, %2, %3"_s.arg(seed, nameOf(kind.module), nameOf(kind.profile))};
            std::printf("%s: ", qPrintable(lastLines.first()));
            std::fflush(stdout); // before a crash without a message
            Night(seed.toUInt() * static_cast<quint32>(std::size(kinds)) + salt++, kind).play();
        }
    }
    return argc > 1 ? 0 : 1;
}
