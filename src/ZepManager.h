// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "AtCmdHandler.h"
#include "Logger.h"
#include "Payload.h"
#include "PrepassConfig.h"
#include "SensorModel.h"
#include "SerialPortManager.h"
#include "TxManager.h"
#include "ZepBoard.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <span>

class QJSEngine;
class QQmlEngine;
class QTimer;
class SessionJournal;

/// The object at the centre: it owns the serial link, the logger and the transmission side for the life of the
/// process, and the board and the codec for the life of a session. Views call its invokable operations and bind to
/// its properties; the device's answers reach them through the models, never as results of the operations.
///
/// The sources are cut by concern: Session (connect, identify, disconnect), Requests (one command, one answer),
/// Dispatch (lines from the device), Parameters (one operation per parameter), Transmission, Prediction, Lora, Sensors
/// and Configuration (all of a Ranger at once, and the file of it).
class ZepManager : public QObject
{
    Q_OBJECT
    Q_MOC_INCLUDE("SessionJournal.h")
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(SerialPortManager *serialPort READ serialPort CONSTANT)
    Q_PROPERTY(ZepBoard *board READ board NOTIFY boardChanged)
    Q_PROPERTY(Logger *logger READ logger CONSTANT)
    Q_PROPERTY(TxManager *tx READ tx NOTIFY txChanged)
    Q_PROPERTY(SessionJournal *journal READ journal CONSTANT)
    Q_PROPERTY(bool processingData READ processingData NOTIFY processingDataChanged)

public:
    /// How much of the device the user asked to see.
    enum Mode { BASIC = 0, EXPERT = 1 };
    Q_ENUM(Mode)

    /// Takes \a serialPort over; without one it makes its own. Only a test that has no port hands one in.
    explicit ZepManager(QObject *parent, SerialPortManager *serialPort = nullptr);

    /// Factory of the QML engine; the engine owns the result.
    static ZepManager *create(QQmlEngine *engine, QJSEngine *scriptEngine);

    [[nodiscard]] SerialPortManager *serialPort() const { return m_serialPort; }
    /// The board of the session; null before the first connect() and after disconnect().
    // cppcheck-suppress CastIntegerToAddressAtReturn ; it does not know what a QPointer converts to
    [[nodiscard]] ZepBoard *board() const { return m_board; }
    [[nodiscard]] Logger *logger() const { return m_logger; }
    [[nodiscard]] TxManager *tx() const { return m_tx; }
    [[nodiscard]] SessionJournal *journal() const { return m_journal; }
    [[nodiscard]] bool processingData() const { return m_processingData; }

    /// Writes the user's settings of the transmission side; the main window calls it when it closes, and a
    /// failed assertion before it ends the program.
    Q_INVOKABLE void saveSettings();
    /// EXPERT reads the frequency and the power of a ZEP1 as well; takes effect at the next connect().
    Q_INVOKABLE void setMode(ZepManager::Mode mode);

    /// Starts a session: creates the board of \a module, opens \a portName and proves by a PING that the device
    /// answers. \a baudrate is "Default", "9600" or "115200". The outcome comes as connected(), or as
    /// SerialPortManager::serialError(), after which the half session stays until disconnect().
    Q_INVOKABLE void connect(ZepBoard::Module module, const QString &portName, const QString &baudrate);
    /// Ends the session, waiting up to 6 s for a transmission under way. Harmless without one.
    Q_INVOKABLE void disconnect();
    /// Reads what the device is; a value that it does not give becomes "NA".
    Q_INVOKABLE void getHwInfo();

    /// Reads the module's clock; the interface's clock adopts it.
    Q_INVOKABLE void getModuleUtcDate();
    /// Sets the module's clock, and on success the interface's, to an ISO date. On failure loadPrepassDataCompleted()
    /// of the transmission side tells that there is nothing to wait for.
    Q_INVOKABLE bool setModuleUtcDate(const QString &isoDate);
    /// Reads whether the module predicts passes; the answer selects the profile.
    Q_INVOKABLE void getPrepassEnable();
    Q_INVOKABLE bool setPrepassEnable(bool enable);
    Q_INVOKABLE void getPrepassConfig();
    /// Has the module predict from the interface's present time on, at the position of the prepass profile, which
    /// keeps the arguments on success. Their units are those of PrepassConfig.
    Q_INVOKABLE bool setPrepassConfig(uchar predictionDuration, double minElevation, uchar minPassDuration,
                                      double maxElevation = PrepassConfig::s_defaultMaxElevation,
                                      ushort maxPasses = PrepassConfig::s_defaultMaxPasses,
                                      double timeMargin = PrepassConfig::s_defaultTimeMargin,
                                      uchar computationStep = PrepassConfig::s_defaultComputationStep);
    /// Reads the LoRa settings of a device that has the stack; any other is not asked.
    Q_INVOKABLE void getLoRaConfig();
    Q_INVOKABLE void getGnssPosition();
    /// Sets the position in degrees. The profile keeps what the device accepted. False, with the profile's present
    /// position notified again, if the device refused.
    Q_INVOKABLE bool setGnssPosition(double latitude, double longitude);
    /// Reads the bulletins that the module holds.
    Q_INVOKABLE void getAopData();
    /// Sends the bulletin, and on ZEP2 and TBX the status, of each satellite that the module knows; downloads first if
    /// there is no bulletin at all. A satellite out of service gets the orbit of one in service under its own id. The
    /// result is that of the last command, false if none was sent.
    Q_INVOKABLE bool setAopDataAndConstellationStatus();
    /// Asks the module for the next pass, for a payload with \a options; downloads first if there is no bulletin. The
    /// answer replaces the row of nextPassModel.
    Q_INVOKABLE void getSatelliteNextPass(const Payload::Options &options = {});

    Q_INVOKABLE void getTxFrequency();
    Q_INVOKABLE void getTxPower();
    /// Sets the Tx power in mW. False, with the board's present value notified again, if the device refused.
    Q_INVOKABLE bool setTxPower(ushort power);
    Q_INVOKABLE void getTxRedundancy();
    Q_INVOKABLE bool setTxRedundancy(uchar redundancy);
    Q_INVOKABLE void getRadioConfig();
    /// Reads the alerts, the thresholds, the enable flags and the acquisition period of a device with sensors.
    Q_INVOKABLE void getSensorsConfig();

    /// Sends the line \a cmd as the user typed it, "AT+" included; ends with customCmdCompleted(), answered or not.
    Q_INVOKABLE void requestCustomCmd(const QString &cmd);
    /// Ends the wait for the wake-up button.
    Q_INVOKABLE void cancelModuleRequest();

    /// Whether the input event that is being processed was made while a request waited. It comes late, and the control
    /// that gets it may mean something else by now.
    Q_INVOKABLE [[nodiscard]] bool isInputHeld() const;

    // The whole configuration; processingData tells that one of them is under way, and processingDataChanged() how it
    // ended. Nothing happens without a session, and what a session leaves unfinished ends with it in silence.

    /// Reads all that the device holds; what it does not tell stays as it is.
    Q_INVOKABLE void getConfig();
    /// Sends all that the models hold, up to the first refusal, and resets the device. It is done, and processingData
    /// false, only when the device reports that it has restarted. Without \a enableLog it is the form for an export.
    Q_INVOKABLE void uploadConfig(bool enableLog = true);
    /// Writes what an upload would send to the file at the URL \a filePath, for its owner's eyes alone; asks nothing
    /// of the device. That a file could not be written only the process log tells; the old one then stays.
    Q_INVOKABLE void exportConfig(const QString &filePath);
    /// Takes the lines of the file at the URL \a filePath for answers of the device, up to the first that is none. A
    /// file that cannot be read is an empty one.
    Q_INVOKABLE void importConfig(const QString &filePath);

    /// Sends all of the sensors, in steps, up to the first that is refused; the device keeps those before it. True
    /// without a word on a board that has none.
    bool setSensorsConfig();
    /// Sends the LoRa settings, in steps, up to the first that fails; no device without the stack is reached.
    bool setLoRaConfig();
    /// Sends whether LoRa is to be on.
    bool setLoRaEnable();

public Q_SLOTS:
    /// Sends a radio configuration, 16 bytes as hexadecimal text, and asks the device for the outcome.
    void setRadioConf(const QByteArray &radioConf);

Q_SIGNALS:
    void boardChanged();
    void txChanged();
    /// \a msg is shown to the user unless it is empty; \a error colours it as a failure.
    void processingDataChanged(const QString &msg = {}, bool error = false);
    void connected();
    void disconnected();
    void customCmdCompleted();
    /// The device sleeps: the user is asked to press its wake-up button.
    void userActionRequested();

private Q_SLOTS:
    void setProcessingData(bool uploading, const QString &msg = {}, bool error = false);
    void onSerialRead(const QString &data);
    void onRequestTimeout();
    void onSerialError(const QString &error);

private:
    bool eventFilter(QObject *watched, QEvent *event) override;

    // Session
    void initBoard(ZepBoard::Module module);
    void bringTransmissionToRest();

    // Requests; the time-outs are in milliseconds.
    static constexpr ushort shortTimeout = 1000;
    static constexpr ushort mediumTimeout = 5000;
    static constexpr ushort longTimeout = 15000;
    bool sendCommand(AtCmdHandler::CmdId id, const QStringList &params, ushort timeout);
    bool sendRaw(const QByteArray &data, ushort timeout);
    struct Question
    {
        AtCmdHandler::CmdId id;
        const char *failure; ///< the line of the log when it is not answered
    };
    /// Asks one question after the other, answered or not, as long as the session lasts.
    void ask(std::span<const Question> questions);
    [[nodiscard]] bool wakeUpBoard();
    /// Whether a wait must end because the session that it belongs to is gone, or the application is going.
    [[nodiscard]] bool isWaitPointless(const QPointer<ZepBoard> &board) const { return !board || m_closing; }

    // Dispatch
    /// Processes the lines that have arrived, in order, up to one that ends a wait.
    void deliverHeldLines();
    void processLine(const QString &data);
    void processResponse();
    void processError();
    void processTxResponse();
    void processPredictionResponse();
    void processLoraResponse();
    void processSensorResponse();
    void processDeviceAssertion();

    // Prediction
    void processPrepassConfig();
    void processBulletin();
    void processConstellationStatus();
    void processNextPass();

    // Lora
    [[nodiscard]] bool hasLoRa() const;

    // Sensors
    static const QMap<SensorModel::Id, AtCmdHandler::CmdId> sensorAlertCmdMap;

    // Configuration
    /// Ends what setProcessingData() began, unless the session of \a board is gone: the next may be busy by now.
    void endProcessing(const QPointer<ZepBoard> &board, const QString &msg = {}, bool error = false);
    /// The failure for the user; empty if all was accepted.
    [[nodiscard]] QString sendConfig();
    [[nodiscard]] bool replayConfig(const QString &path);

    // Parameters
    void getId();
    void getAddr();
    void getSerialNumber();
    void getFirmwareVersion();
    [[nodiscard]] bool ping();
    bool resetDevice();

    // Transmission
    bool requestTx(const QString &data, const Payload::Options &options, const bool &flush);
    bool flushTxFifo(const QString &data, const Payload::Options &options);

    SerialPortManager *m_serialPort = nullptr;
    QPointer<ZepBoard> m_board;
    Logger *m_logger = nullptr;
    QPointer<AtCmdHandler> m_atCmdHandler;
    TxManager *m_tx = nullptr;
    SessionJournal *m_journal = nullptr;
    bool m_processingData = false;
    Mode m_mode = BASIC;
    bool m_requestFailed = false;
    bool m_requestPending = false;
    bool m_txRequested = false; ///< by the request made last, which an answer over the air follows
    bool m_requestCancelled = false;
    int m_waitDepth = 0;     ///< requests that wait for an answer, one inside the other
    QStringList m_heldLines; ///< arrived, and not processed yet
    QTimer *m_requestTimer = nullptr;
    bool m_exportMode = false;
    QString m_exportBuffer;
    bool m_closing = false; ///< the application has been asked to quit
};
