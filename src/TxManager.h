// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <optional>

#include <QDateTime>
#include <QObject>
#include <QSettings>
#include <QtQmlIntegration>

#include "Clock.h"
#include "ModulationModel.h"
#include "Payload.h"

class LoRaConnectivity;
class Logger;
class PayloadModel;
class PeriodicProfile;
class PrepassModel;
class PrepassProfile;
class QStringListModel;
class QTimer;

/// The transmission side: it owns the payload list, the profile settings and the modulation model, keeps the clock of
/// the interface, restores and saves the user's settings, and runs the sequences. It outlives the sessions and knows
/// no command of the device: it reaches it through the two callbacks and the signal setRadioConfRequest().
///
/// The callbacks spin the event loop, so its own timers and the device's answers are served inside them.
class TxManager : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_MOC_INCLUDE("LoRaConnectivity.h")
    Q_MOC_INCLUDE("PayloadModel.h")
    Q_MOC_INCLUDE("PeriodicProfile.h")
    Q_MOC_INCLUDE("PrepassModel.h")
    Q_MOC_INCLUDE("PrepassProfile.h")
    Q_MOC_INCLUDE(<QStringListModel>)
    Q_PROPERTY(QString utcTime READ utcTime NOTIFY utcTimeChanged)
    Q_PROPERTY(
        TxManager::Profile selectedProfile READ selectedProfile WRITE setSelectedProfile NOTIFY selectedProfileChanged)
    Q_PROPERTY(PeriodicProfile *periodicProfile READ periodicProfile CONSTANT)
    Q_PROPERTY(PrepassProfile *prepassProfile READ prepassProfile CONSTANT)
    Q_PROPERTY(bool loraEnabled READ loraEnabled WRITE setLoraEnabled NOTIFY loraEnabledChanged)
    Q_PROPERTY(LoRaConnectivity *loraConfig READ loraConfig CONSTANT)
    Q_PROPERTY(PrepassModel *prepassListModel READ prepassListModel CONSTANT)
    Q_PROPERTY(qulonglong nextPassIdx READ nextPassIdx NOTIFY nextPassIdxChanged)
    Q_PROPERTY(PayloadModel *payloadListModel READ payloadListModel CONSTANT)
    Q_PROPERTY(
        uchar currentSequenceRepeatCount READ currentSequenceRepeatCount NOTIFY currentSequenceRepeatCountChanged)
    Q_PROPERTY(bool ackPending READ ackPending NOTIFY ackPendingChanged)
    Q_PROPERTY(bool sequenceRunning READ sequenceRunning NOTIFY sequenceRunningChanged)
    Q_PROPERTY(int timeUntilNextTx READ timeUntilNextTx NOTIFY timeUntilNextTxChanged)
    Q_PROPERTY(bool computingSatelliteNextPass READ computingSatelliteNextPass NOTIFY computingSatelliteNextPassChanged)
    Q_PROPERTY(QStringListModel *modulationList READ modulationList CONSTANT)
    Q_PROPERTY(ModulationModel *modulationModel READ modulationModel CONSTANT)

public:
    enum Profile : int {
        PERIODIC,          ///< Fixed intervals, no knowledge of satellites
        PREPASS,           ///< Passes from an imported table, scheduled here
        PREPASS_ON_MODULE, ///< The module computes the next pass and transmits by itself
    };
    Q_ENUM(Profile)

    /// Sends \a data with \a options, or empties the device's Tx FIFO with \a flush and no data. True once the
    /// request is accepted; the result over the air comes later, through onTxDone().
    using RequestTxCallback = std::function<bool(QString data, Payload::Options options, bool flush)>;
    /// Asks the module for its next pass; returns when it has answered.
    using GetSatelliteNextPassCallback = std::function<void(Payload::Options options)>;

    /// \a logger is not owned. Reads the user's settings from the application's store and the radio configuration
    /// files, and starts the clock.
    TxManager(Logger *logger, RequestTxCallback requestTxCallback,
              GetSatelliteNextPassCallback getSatelliteNextPassCallback, QObject *parent = nullptr);

    /// The interface's clock, as the user reads it: "ddd MMM d, hh:mm:ss".
    [[nodiscard]] QString utcTime() const;
    /// The interface's clock: the computer's UTC plus the user's offset, as of the last second.
    [[nodiscard]] QDateTime utcDateTime() const { return m_utcTime; }
    [[nodiscard]] Profile selectedProfile() const { return m_selectedProfile; }
    [[nodiscard]] PeriodicProfile *periodicProfile() const { return m_periodicProfile; }
    [[nodiscard]] PrepassProfile *prepassProfile() const { return m_prepassProfile; }
    /// Whether the device has LoRa switched on.
    [[nodiscard]] bool loraEnabled() const { return m_loraEnabled; }
    [[nodiscard]] LoRaConnectivity *loraConfig() const { return m_loraConfig; }
    /// The imported table of passes; rows 0 to nextPassIdx() - 1 are in progress.
    [[nodiscard]] PrepassModel *prepassListModel() const { return m_prepassListModel; }
    /// Row of prepassListModel() that starts next; the number of rows when none is to come.
    [[nodiscard]] qulonglong nextPassIdx() const { return m_nextPassIdx; }
    [[nodiscard]] PayloadModel *payloadListModel() const { return m_payloadListModel; }
    /// Repetitions finished of the running sequence.
    [[nodiscard]] uchar currentSequenceRepeatCount() const { return m_currentSequenceRepeatCount; }
    /// The device still owes a Tx answer.
    [[nodiscard]] bool ackPending() const { return m_ackPending; }
    /// True from start() to stop(), also when all repetitions are done.
    [[nodiscard]] bool sequenceRunning() const { return m_sequenceRunning; }
    /// Seconds to the next Tx, for display; 1 when nothing is armed, 0 after stop().
    [[nodiscard]] int timeUntilNextTx() const { return m_timeUntilNextTx; }
    [[nodiscard]] bool computingSatelliteNextPass() const { return m_computingSatelliteNextPass; }
    /// Names of the real modulations; a row is the value in ModulationModel::Modulation. Filled anew by each call.
    [[nodiscard]] QStringListModel *modulationList();
    [[nodiscard]] ModulationModel *modulationModel() const { return m_modulationModel; }

    /// Appends a payload with the redundancy of the selected profile.
    Q_INVOKABLE void addPayloadItem(const QString &message);
    /// Fills prepassListModel() from the table at the URL \a filePath and remembers it for the next session, unless it
    /// cannot be opened. The outcome is told by loadPrepassDataCompleted(); an empty \a filePath is nothing to do.
    Q_INVOKABLE void importPrepassData(const QString &filePath);
    /// Empties prepassListModel(), without a notification of nextPassIdx, and forgets its file with
    /// \a eraseFilePath.
    Q_INVOKABLE void clearPrepassData(bool eraseFilePath = true);
    /// Sets the interface's clock to an ISO date; the seconds are what counts, and one more or less is no change.
    Q_INVOKABLE void setCustomUtcTime(const QString &customIsoDate);
    /// Starts a sequence that sends the whole list \a repeatNum times. The list must not be empty and no sequence may
    /// run. What stands against a start is told by txErrorOccured().
    Q_INVOKABLE void start(uchar repeatNum);
    /// Ends the sequence, or clears one that is complete; does nothing without one. An answer that is still out stays
    /// awaited.
    Q_INVOKABLE void stop();
    /// Asks for the kept radio configuration of \a modulation to be sent to the device.
    Q_INVOKABLE void changeModulationRadioConfiguration(ModulationModel::Modulation modulation);
    /// Asks for the radio configuration in the file at the URL \a filepath to be sent to the device. A file that is
    /// not 16 bytes long, or cannot be read, is refused with a log line.
    Q_INVOKABLE void importRadioConfFile(const QString &filepath);

    /// The device's Tx answer, \a data being the payload that it sent.
    void onTxDone(const QString &data);
    /// The device reported that the Tx in the air failed, or its answer cannot be read. The Tx counts as made; a
    /// module gets the payload again at the end of its pass. Does nothing when no answer is awaited.
    void onTxFailed();
    /// No answer is awaited any more. Does nothing when none was.
    void settleAck();
    /// The line to the device is lost: no answer is awaited any more, and the sequence holds still, so that the views
    /// keep what was reached, until stop().
    void onLineLost();
    /// The device reported the profile that it works by. It is selected at once, or, as it says what the answers to
    /// come mean, when the sequence has ended and no answer is awaited.
    void selectReportedProfile(Profile profile);
    /// Moves the interface's clock to \a seconds from the computer's UTC and says so in the log, unless that is where
    /// it is, give or take one second. With \a reload the pass table is read again against the new clock.
    void applyUtcOffset(qint64 seconds, bool reload);
    /// Imports the remembered table again. One whose passes are all over by now is forgotten.
    void reloadPrepassData();
    void saveSettings();
    /// Forgets the LoRa settings of the device; the views hear of it at their next change.
    void resetLoraConfig();

public Q_SLOTS:
    /// A value outside the enumeration fails an assertion.
    void setSelectedProfile(TxManager::Profile profile);
    void setLoraEnabled(bool loraEnabled);
    /// A value that is no change fails an assertion.
    void setAckPending(bool pending);
    void setComputingSatelliteNextPass(bool computing);

Q_SIGNALS:
    void utcTimeChanged();
    void selectedProfileChanged();
    void loraEnabledChanged();
    void nextPassIdxChanged();
    void currentSequenceRepeatCountChanged();
    void ackPendingChanged();
    void sequenceRunningChanged();
    void timeUntilNextTxChanged();
    void computingSatelliteNextPassChanged();

    /// A radio configuration, hexadecimal text, is to be sent to the device.
    void setRadioConfRequest(QByteArray radioConf);
    void profileSwitchFailed();
    /// An import of passes ended; an empty text means no error. Also after a change of the clock that changed nothing.
    void loadPrepassDataCompleted(QString error = QString());
    /// A sequence could not start or go on; \a error is for the user.
    void txErrorOccured(QString error);
    /// The sequence moved to this payload.
    void currentIndexUpdated(uchar index);
    /// All repetitions are done.
    void sequenceCompleted();
    /// A malformed payload ended the sequence; stop() itself does not emit it.
    void sequenceStopped();

private Q_SLOTS:
    void setSequenceRunning(bool running);
    void onPeriodicRedundancyChanged();
    void onUtcTimeRefreshOver();
    void applyReportedProfile();
    void onScheduleOver();
    void onCountdownRefreshOver();
    void schedulePrepassOnModuleTx();

private:
    void log(const QString &message);
    [[nodiscard]] bool requestTx(const QString &data, const Payload::Options &options, bool flush);
    void getSatelliteNextPass(const Payload::Options &options);

    void loadSettings();
    void loadPrepassProfile();
    void loadPayloads();

    /// The interface's clock, to the millisecond.
    [[nodiscard]] QDateTime currentUtc() const;
    void refreshUtcTime();
    void followClock();

    void scheduleNextTx();
    void schedulePeriodicTx();
    void armSchedule(qint64 milliseconds);
    [[nodiscard]] bool transmitPayload();
    void flushTxPayloads();
    [[nodiscard]] bool isFirstTx() const;
    [[nodiscard]] bool isLastTx() const;
    /// Whether the run that made a request still goes on after it, not another one, and is not complete.
    [[nodiscard]] bool isRunning(quint64 run) const { return isGoingOn() && run == m_run; }
    /// Whether a sequence has still something to send and a line to send it over.
    [[nodiscard]] bool isGoingOn() const { return m_sequenceRunning && !m_sequenceCompleted && !m_lineLost; }
    [[nodiscard]] bool checkPayloadBeforeTx(int index);
    void finishRepetition();
    void goOnAfterAnswer();
    void resetTxState();
    void refreshTimeUntilNextTx();

    void beginTable();
    [[nodiscard]] bool hasNextPass() const;
    void walkPasses();
    void schedulePrepassTx();
    void endUsedUpSequence();

    void prepareModule();
    void serveModule();
    void queuePayload();
    void askForNextPass();
    void onPassBoundary();
    void beginPass();
    void endPass();
    void waitForNextPass();
    void waitForBoundary();
    void waitUntil(const QDateTime &boundary, qint64 atLeast = 0);

    Logger *m_logger;
    RequestTxCallback m_requestTxCallback;
    GetSatelliteNextPassCallback m_getSatelliteNextPassCallback;
    QDateTime m_utcTime = Clock::current()->utcNow();
    qint64 m_utcOffsetSeconds = 0;
    QTimer *m_utcTimeRefreshTimer;
    Profile m_selectedProfile = PERIODIC;
    std::optional<Profile> m_reportedProfile; // to be selected when nothing is awaited
    PeriodicProfile *m_periodicProfile;
    PrepassProfile *m_prepassProfile;
    bool m_loraEnabled = false;
    LoRaConnectivity *m_loraConfig;
    PrepassModel *m_prepassListModel;
    QString m_csvFilePath; // URL of the pass table that was imported last
    ModulationModel *m_modulationModel;
    qulonglong m_nextPassIdx = 0;        // row of the pass table that starts next
    qulonglong m_activePassIdxCount = 0; // passes in progress: rows of the table, or the module's own
    PayloadModel *m_payloadListModel;

    uchar m_currentIndex = 0;   // payload being worked on
    uchar m_currentTxCount = 0; // times it was sent in this repetition
    uchar m_sentIndex = 0;      // of the Tx that was accepted last, which an answer speaks of
    uchar m_sentTxCount = 0;
    bool m_transmitting = false; // a Tx is being requested, and not accepted yet
    uchar m_repeatNum = 0;
    uchar m_currentSequenceRepeatCount = 0;
    bool m_ackPending = false;
    bool m_sequenceRunning = false;
    quint64 m_run = 0; // counts the starts: a request that spins the event loop can outlive the run that made it
    bool m_sequenceCompleted = false; // all repetitions done, stop() awaited
    bool m_lineLost = false;
    bool m_tableUsedUp = false; // the last answer is waited for, then the sequence ends
    bool m_computingSatelliteNextPass = false;
    // What a module is to be asked for next, one request at a time.
    quint64 m_servedRun = 0;         // run whose requests are under way
    bool m_mustQueue = false;        // the current payload is to be queued
    bool m_mustAsk = false;          // the next pass is to be asked for
    bool m_mustQueueAgain = false;   // at the end of the pass: the module does not hold the current payload
    bool m_nextPassAnswered = false; // by the request under way
    int m_nextPassFailures = 0;      // one after the other
    qint64 m_nextPassPause = 0;      // ms before the next request
    QTimer *m_scheduleTimer;
    QDateTime m_scheduleDue; // when it runs out, on the clock of the interface
    QTimer *m_countdownTimer;
    int m_timeUntilNextTx = 0;

    QSettings m_settings;
    QStringListModel *m_modulationList;
};
