// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "AtCmdHandler.h"
#include "Logger.h"
#include "PortSettings.h"
#include "SensorModel.h"

#include <QMap>
#include <QObject>
#include <QtQmlIntegration>

/// What is known of the connected device: what its type fixes, what the user chose at connection time, and what the
/// device reported. It does no input or output: ZepManager fills it from parsed lines, the views bind to it. It lives
/// for one session. A setter stores and always notifies, so that a repeated response notifies again.
class ZepBoard : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(ZepBoard::Module module READ module NOTIFY moduleChanged)
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(QString port READ port NOTIFY portChanged)
    Q_PROPERTY(QString id READ id NOTIFY idChanged)
    Q_PROPERTY(QString serialNumber READ serialNumber NOTIFY serialNumberChanged)
    Q_PROPERTY(QString addr READ addr NOTIFY addrChanged)
    Q_PROPERTY(QString firmwareVersion READ firmwareVersion NOTIFY firmwareVersionChanged)
    Q_PROPERTY(uint txFrequency READ txFrequency NOTIFY txFrequencyChanged)
    Q_PROPERTY(ushort txPower READ txPower NOTIFY txPowerChanged)
    Q_PROPERTY(SensorModel *sensorListModel READ sensorListModel CONSTANT)
    Q_PROPERTY(bool isAwake READ isAwake NOTIFY isAwakeChanged)
    Q_PROPERTY(bool loraCompatible READ loraCompatible NOTIFY loraCompatibleChanged)
    Q_PROPERTY(bool loraStackIntegrated READ loraStackIntegrated NOTIFY loraStackIntegratedChanged)
    Q_PROPERTY(QString loraMinVersion READ loraMinVersion CONSTANT)

public:
    /// The type of a board. The keys are the names that the user sees.
    enum Module { NA, ZEP1, ZEP2, TBX, RANGER };
    Q_ENUM(Module)

    explicit ZepBoard(QObject *parent = nullptr);

    [[nodiscard]] Module module() const { return m_module; }
    /// The key of module().
    [[nodiscard]] QString name() const;
    [[nodiscard]] QString port() const { return m_port; }
    /// Upper case; "NA" until the device told it, and after it failed to.
    [[nodiscard]] QString id() const { return m_id; }
    [[nodiscard]] QString serialNumber() const { return m_serialNumber; }
    /// Upper case; empty until the device told it, "NA" after it failed to.
    [[nodiscard]] QString addr() const { return m_addr; }
    [[nodiscard]] QString firmwareVersion() const { return m_firmwareVersion; }
    /// In Hz; 0 is unknown.
    [[nodiscard]] uint txFrequency() const { return m_txFrequency; }
    /// In mW; 0 is unknown.
    [[nodiscard]] ushort txPower() const { return m_txPower; }
    /// Whether the device can take a command now.
    [[nodiscard]] bool isAwake() const { return m_isAwake; }
    /// Whether this type of board can carry LoRa at all.
    [[nodiscard]] bool loraCompatible() const { return m_loraCompatible; }
    /// Whether the firmware of this device has the LoRa stack.
    [[nodiscard]] bool loraStackIntegrated() const { return m_loraStackIntegrated; }
    /// The first firmware with the LoRa stack, for display; empty if this type has none.
    [[nodiscard]] QString loraMinVersion() const { return m_loraMinVersion; }
    /// Null if this type of board has no sensors.
    [[nodiscard]] SensorModel *sensorListModel() const { return m_sensorListModel; }

    [[nodiscard]] PortSettings portSettings() const { return m_portSettings; }
    /// The patterns of the data that this board sends, by command (see ResponseGrammar.h).
    [[nodiscard]] QMap<AtCmdHandler::CmdId, QString> regexMap() const { return m_regexMap; }
    /// The words of the commands that the user can send, in alphabetical order: those whose answer the board's patterns
    /// read, and "PING". What the device reports without being asked is not among them.
    Q_INVOKABLE [[nodiscard]] QStringList commands() const;
    /// The source tag of the lines that come from this device.
    [[nodiscard]] Logger::Source logSource() const { return m_logSource; }

public Q_SLOTS:
    void setModule(ZepBoard::Module module);
    void setPort(const QString &port);
    void setId(const QString &id);
    void setAddr(const QString &addr);
    void setSerialNumber(const QString &serialNumber);
    virtual void setFirmwareVersion(const QString &firmwareVersion);
    void setTxFrequency(uint txFrequency);
    void setTxPower(ushort txPower);
    void setIsAwake(bool isAwake);

Q_SIGNALS:
    void moduleChanged();
    void nameChanged();
    void portChanged();
    void idChanged();
    void addrChanged();
    void serialNumberChanged();
    void firmwareVersionChanged();
    void txFrequencyChanged();
    void txPowerChanged();
    void isAwakeChanged();
    void loraCompatibleChanged();
    void loraStackIntegratedChanged();

protected:
    PortSettings m_portSettings;
    QMap<AtCmdHandler::CmdId, QString> m_regexMap;
    bool m_isAwake = true;
    Logger::Source m_logSource = Logger::ZEP;
    QString m_firmwareVersion = QStringLiteral("NA");
    bool m_loraCompatible = false;
    bool m_loraStackIntegrated = false;
    QString m_loraMinVersion;
    SensorModel *m_sensorListModel = nullptr; ///< a child of this

private:
    Module m_module = NA;
    QString m_port = QStringLiteral("NA");
    QString m_id = QStringLiteral("NA");
    QString m_addr;
    QString m_serialNumber = QStringLiteral("NA");
    quint32 m_txFrequency = 0;
    quint16 m_txPower = 0;
};
