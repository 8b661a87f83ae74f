// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TxManager.h"

#include <utility>

#include <QFile>
#include <QMetaEnum>
#include <QStringListModel>
#include <QTimer>

#include "Assertion.h"
#include "LoRaConnectivity.h"
#include "LocalPath.h"
#include "Logger.h"
#include "PayloadModel.h"
#include "PeriodicProfile.h"
#include "PrepassModel.h"
#include "PrepassProfile.h"

namespace {

constexpr auto c_source = "src/TxManager";
constexpr int c_clockInterval = 1000; // ms
constexpr qint64 c_radioConfSize = 16;

QTimer *namedTimer(QObject *parent, const char *name)
{
    auto *timer = new QTimer(parent);
    timer->setObjectName(QLatin1String(name));
    return timer;
}

} // namespace

TxManager::TxManager(Logger *logger, RequestTxCallback requestTxCallback,
                     GetSatelliteNextPassCallback getSatelliteNextPassCallback, QObject *parent)
    : QObject(parent)
    , m_logger(logger)
    , m_requestTxCallback(std::move(requestTxCallback))
    , m_getSatelliteNextPassCallback(std::move(getSatelliteNextPassCallback))
    , m_utcTimeRefreshTimer(namedTimer(this, "utcTimeRefreshTimer"))
    , m_periodicProfile(new PeriodicProfile(this))
    , m_prepassProfile(new PrepassProfile(this))
    , m_loraConfig(new LoRaConnectivity(this))
    , m_prepassListModel(new PrepassModel(this))
    , m_modulationModel(new ModulationModel(this))
    , m_payloadListModel(new PayloadModel(this))
    , m_scheduleTimer(namedTimer(this, "scheduleTimer"))
    , m_countdownTimer(namedTimer(this, "countdownTimer"))
    , m_modulationList(new QStringListModel(this))
{
    loadSettings();

    connect(m_periodicProfile, &PeriodicProfile::redundancyChanged, this, &TxManager::onPeriodicRedundancyChanged);
    connect(m_utcTimeRefreshTimer, &QTimer::timeout, this, &TxManager::onUtcTimeRefreshOver);
    connect(m_scheduleTimer, &QTimer::timeout, this, &TxManager::onScheduleOver);
    connect(m_countdownTimer, &QTimer::timeout, this, &TxManager::onCountdownRefreshOver);
    connect(m_modulationModel, &ModulationModel::allowedSizeChanged, m_payloadListModel, &PayloadModel::setAllowedSize);
    connect(m_prepassProfile->nextPassModel(), &PrepassModel::rowsInserted, this,
            [this] { m_nextPassAnswered = true; });
    // Queued: what ends a sequence may still have a request to make that depends on the profile.
    connect(this, &TxManager::sequenceRunningChanged, this, &TxManager::applyReportedProfile, Qt::QueuedConnection);
    connect(this, &TxManager::ackPendingChanged, this, &TxManager::applyReportedProfile, Qt::QueuedConnection);

    m_utcTimeRefreshTimer->start(c_clockInterval);
    m_scheduleTimer->setSingleShot(true);
    // The default may fire five percent off, which is a quarter of a minute over a payload interval.
    m_scheduleTimer->setTimerType(Qt::PreciseTimer);
}

QStringListModel *TxManager::modulationList()
{
    const QMetaEnum modulations = QMetaEnum::fromType<ModulationModel::Modulation>();
    QStringList names;
    for (int value = 0; value < ModulationModel::MODULATION_LAST; ++value) {
        names << QString::fromLatin1(modulations.valueToKey(value));
    }
    m_modulationList->setStringList(names);
    return m_modulationList;
}

void TxManager::setSelectedProfile(Profile profile)
{
    switch (profile) {
    case PERIODIC:
        onPeriodicRedundancyChanged();
        break;
    case PREPASS_ON_MODULE:
        m_nextPassIdx = 0;
        Q_EMIT nextPassIdxChanged();
        [[fallthrough]];
    case PREPASS:
        for (int row = 0; row < m_payloadListModel->rowCount(); ++row) {
            const QVariant important = m_payloadListModel->index(row).data(PayloadModel::OptionImportantRole);
            m_payloadListModel->setRedundancy(row, PayloadModel::prepassRedundancy(important.toBool()));
        }
        break;
    default:
        ZEPGUI_ASSERT(false, "Invalid Tx profile value", c_source);
    }
    // The count of the module's pass says nothing about the table, which runs on under every other profile.
    m_activePassIdxCount = m_nextPassIdx;
    m_selectedProfile = profile;
    m_reportedProfile.reset();
    Q_EMIT selectedProfileChanged();
}

void TxManager::selectReportedProfile(Profile profile)
{
    m_reportedProfile = profile;
    applyReportedProfile();
}

void TxManager::applyReportedProfile()
{
    if (m_reportedProfile && !m_sequenceRunning && !m_ackPending) {
        setSelectedProfile(*m_reportedProfile);
    }
}

void TxManager::onPeriodicRedundancyChanged()
{
    for (int row = 0; row < m_payloadListModel->rowCount(); ++row) {
        m_payloadListModel->setRedundancy(row, m_periodicProfile->redundancy());
    }
}

void TxManager::addPayloadItem(const QString &message)
{
    m_payloadListModel->add(message, m_selectedProfile == PERIODIC ? m_periodicProfile->redundancy()
                                                                   : PayloadModel::s_defaultRedundancy);
}

void TxManager::setLoraEnabled(bool loraEnabled)
{
    m_loraEnabled = loraEnabled;
    Q_EMIT loraEnabledChanged();
}

void TxManager::resetLoraConfig()
{
    m_loraConfig->clear();
}

void TxManager::setComputingSatelliteNextPass(bool computing)
{
    m_computingSatelliteNextPass = computing;
    Q_EMIT computingSatelliteNextPassChanged();
}

void TxManager::changeModulationRadioConfiguration(ModulationModel::Modulation modulation)
{
    Q_EMIT setRadioConfRequest(m_modulationModel->radioConf(modulation));
}

void TxManager::importRadioConfFile(const QString &filepath)
{
    QFile file(localPath(filepath));
    const bool opened = !isOtherThanFile(file.fileName()) && file.open(QIODevice::ReadOnly);
    // One byte more than a configuration has tells a longer file, whatever its size.
    const QByteArray content = opened ? file.read(c_radioConfSize + 1) : QByteArray();
    if (content.size() != c_radioConfSize) {
        log(QStringLiteral("Radio configuration file is not valid (should be 16 bytes long)!"));
        return;
    }
    Q_EMIT setRadioConfRequest(content.toHex());
}

void TxManager::log(const QString &message)
{
    m_logger->log(Logger::APP, message);
}

bool TxManager::requestTx(const QString &data, const Payload::Options &options, bool flush)
{
    ZEPGUI_ASSERT(m_requestTxCallback != nullptr, "Callback for requestTx method is NULL", c_source);
    return m_requestTxCallback(data, options, flush);
}

void TxManager::getSatelliteNextPass(const Payload::Options &options)
{
    ZEPGUI_ASSERT(m_getSatelliteNextPassCallback != nullptr, "Callback for getSatelliteNextPass method is NULL",
                  c_source);
    m_getSatelliteNextPassCallback(options);
}
