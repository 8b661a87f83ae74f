// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQmlIntegration>

#include "Position.h"
#include "PrepassConfig.h"

class PrepassModel;
class SatelliteAopModel;

/// Settings of the two prepass profiles, the bulletins and the next pass of the module. It fetches the bulletins from
/// the operator's web service. The setters store and emit, also without a change.
class PrepassProfile : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_MOC_INCLUDE("PrepassModel.h")
    Q_MOC_INCLUDE("SatelliteAopModel.h")
    Q_PROPERTY(Position position READ position NOTIFY positionChanged)
    Q_PROPERTY(PrepassConfig config READ config NOTIFY configChanged)
    Q_PROPERTY(SatelliteAopModel *satelliteAopModel READ satelliteAopModel CONSTANT)
    Q_PROPERTY(PrepassModel *nextPassModel READ nextPassModel CONSTANT)
    Q_PROPERTY(uchar redundancy READ redundancy WRITE setRedundancy NOTIFY redundancyChanged)

public:
    static constexpr uchar s_defaultRedundancy = 4;

    /// Reads the address of the web service from the key "Prepass/aopWebRequestUrl" of the file "config.ini" in the
    /// working directory; without it the default stands, an address that leads nowhere.
    explicit PrepassProfile(QObject *parent = nullptr);

    [[nodiscard]] Position position() const { return m_position; }
    [[nodiscard]] PrepassConfig config() const { return m_config; }
    [[nodiscard]] SatelliteAopModel *satelliteAopModel() const { return m_satelliteAopModel; }
    /// One row: the next pass that the module computed, or a placeholder named "NA" before its first answer.
    [[nodiscard]] PrepassModel *nextPassModel() const { return m_nextPassModel; }
    /// Times that the module sends each payload.
    [[nodiscard]] uchar redundancy() const { return m_redundancy; }

    /// Fetches the bulletins and merges them into satelliteAopModel(). Waits inside the call, in an event loop of its
    /// own, so the interface stays alive and anything may have changed when it returns. Gives up after 5 s without
    /// data, at an answer of more than 16 MiB, and when the application quits. False, with the list as it was, when
    /// nothing usable came; ends with aopDataDownloadFinished() either way.
    Q_INVOKABLE bool downloadAopData();

public Q_SLOTS:
    void setPosition(Position position);
    void setConfig(const PrepassConfig &config);
    void setRedundancy(uchar redundancy);
    /// Degrees.
    void setConfigMinElevation(double minElevation);
    /// Minutes.
    void setConfigMinPassDuration(uchar minPassDuration);

Q_SIGNALS:
    void positionChanged();
    void configChanged();
    void redundancyChanged();
    /// \a error is for the user; empty after a success.
    void aopDataDownloadFinished(const QString &error = QString());

private:
    Position m_position;
    PrepassConfig m_config;
    SatelliteAopModel *m_satelliteAopModel;
    PrepassModel *m_nextPassModel;
    uchar m_redundancy = s_defaultRedundancy;
    QString m_aopWebRequestUrl; // holds a password: never logged
};
