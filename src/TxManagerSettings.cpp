// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TxManager.h"

#include <limits>
#include <utility>

#include <QLockFile>
#include <QMultiMap>
#include <QRegularExpression>
#include <QStringList>

#include "PayloadModel.h"
#include "PeriodicProfile.h"
#include "PrepassProfile.h"
#include "SettingText.h"
#include "SettingsStore.h"

namespace {

constexpr auto c_payloadKeyPrefix = "msg";
constexpr auto c_storeLock = ".lock";  // Qt's own, around each writing of the file
constexpr auto c_saveLock = ".saving"; // around a whole save
constexpr int c_saveTurn = 2000;       // milliseconds
constexpr double c_rightAngle = 90;    // degrees
constexpr double c_wholeTurn = 360;    // degrees; a module may count longitudes from 0

/// The number under \a key, or \a fallback when there is none from \a first to \a last: the store may have been
/// edited by hand.
int storedNumber(const QSettings &settings, const char *key, int first, int last, int fallback)
{
    bool isNumber = false;
    // By way of the text: a variant's own conversion cuts a number that overflows, where this one refuses it.
    const int number = settings.value(QLatin1String(key), fallback).toString().toInt(&isNumber);
    return isNumber && number >= first && number <= last ? number : fallback;
}

uchar storedByte(const QSettings &settings, const char *key, int first, uchar fallback)
{
    return static_cast<uchar>(storedNumber(settings, key, first, std::numeric_limits<uchar>::max(), fallback));
}

/// As storedNumber(); what is not finite lies in no range.
double storedReal(const QSettings &settings, const char *key, double first, double last, double fallback)
{
    bool isNumber = false;
    const double number = settings.value(QLatin1String(key), fallback).toString().toDouble(&isNumber);
    return isNumber && number >= first && number <= last ? number : fallback;
}

/// A program killed while it took a lock leaves one without a name. Qt would wait half a minute for its holder, with
/// the window standing still. A lock whose holder lives stays.
void removeOrphanedLock(const QSettings &settings, const char *suffix)
{
    QLockFile(settings.fileName() + QLatin1String(suffix)).removeStaleLockFile();
}

} // namespace

void TxManager::loadSettings()
{
    removeOrphanedLock(m_settings, c_storeLock);
    removeOrphanedLock(m_settings, c_saveLock);
    m_settings.beginGroup("Tx");
    setSelectedProfile(
        static_cast<Profile>(storedNumber(m_settings, "profile", PERIODIC, PREPASS_ON_MODULE, PERIODIC)));
    m_csvFilePath = m_settings.value("csvFilePath").toString();
    m_settings.beginGroup("Periodic");
    // A Tx that follows at once finds the answer to the one before still out, which ends the program.
    m_periodicProfile->setPeriod(storedByte(m_settings, "period", 1, PeriodicProfile::s_defaultPeriod));
    // A sequence cannot send a payload zero times.
    m_periodicProfile->setRedundancy(storedByte(m_settings, "redundancy", 1, PeriodicProfile::s_defaultRedundancy));
    m_periodicProfile->setDelay(storedByte(m_settings, "delay", 1, PeriodicProfile::s_defaultDelay));
    m_settings.endGroup();
    m_settings.beginGroup("Prepass");
    loadPrepassProfile();
    m_settings.endGroup();
    m_settings.endGroup();

    m_settings.beginGroup("Payloads");
    loadPayloads();
    m_settings.endGroup();
}

void TxManager::loadPrepassProfile()
{
    m_prepassProfile->setPosition({storedReal(m_settings, "latitude", -c_rightAngle, c_rightAngle, 0),
                                   storedReal(m_settings, "longitude", -c_wholeTurn, c_wholeTurn, 0)});
    PrepassConfig config;
    config.predictionDuration = storedByte(m_settings, "predictionDuration", 0, config.predictionDuration);
    config.minElevation = storedReal(m_settings, "minElevation", -c_rightAngle, c_rightAngle, config.minElevation);
    config.minPassDuration = storedByte(m_settings, "minPassDuration", 0, config.minPassDuration);
    m_prepassProfile->setConfig(config);
    m_prepassProfile->setRedundancy(storedByte(m_settings, "redundancy", 0, PrepassProfile::s_defaultRedundancy));
}

void TxManager::loadPayloads()
{
    // The keys are taken as they are found rather than counted up, so that a gap in a store edited by hand costs none
    // of the payloads behind it: the next save writes the group anew.
    QMultiMap<qulonglong, QVariant> payloads; // "msg2" and "msg02" are two
    const QRegularExpression pattern(QLatin1Char('^') + QLatin1String(c_payloadKeyPrefix) + QLatin1String("([0-9]+)$"));
    const QStringList keys = m_settings.childKeys();
    for (const QString &key : keys) {
        if (const QRegularExpressionMatch match = pattern.match(key); match.hasMatch()) {
            payloads.insert(match.captured(1).toULongLong(), m_settings.value(key));
        }
    }
    for (const QVariant &value : std::as_const(payloads)) {
        addPayloadItem(settingText(value));
    }
}

void TxManager::saveSettings()
{
    if (!m_settings.group().isEmpty()) {
        return; // an assertion failed while the settings were loaded or saved: what is stored is better
    }
    // Windows that close at once take turns, and each reads first what the others wrote: payloads that it does not know
    // of would outlive the removal of the group, behind its own.
    QLockFile turn(m_settings.fileName() + QLatin1String(c_saveLock));
    (void)turn.tryLock(c_saveTurn); // what cannot be had, as in a folder that is not there yet, is done without
    removeOrphanedLock(m_settings, c_storeLock);
    m_settings.sync();
    m_settings.beginGroup("Tx");
    m_settings.setValue("profile", int{m_selectedProfile});
    m_settings.setValue("csvFilePath", m_csvFilePath);
    m_settings.beginGroup("Periodic");
    m_settings.setValue("period", int{m_periodicProfile->period()});
    m_settings.setValue("redundancy", int{m_periodicProfile->redundancy()});
    m_settings.setValue("delay", int{m_periodicProfile->delay()});
    m_settings.endGroup();
    m_settings.beginGroup("Prepass");
    m_settings.setValue("latitude", m_prepassProfile->position().latitude);
    m_settings.setValue("longitude", m_prepassProfile->position().longitude);
    m_settings.setValue("predictionDuration", int{m_prepassProfile->config().predictionDuration});
    m_settings.setValue("minElevation", m_prepassProfile->config().minElevation);
    m_settings.setValue("minPassDuration", int{m_prepassProfile->config().minPassDuration});
    m_settings.setValue("redundancy", int{m_prepassProfile->redundancy()});
    m_settings.endGroup();
    m_settings.endGroup();

    m_settings.beginGroup("Payloads");
    m_settings.remove(QString());
    for (int row = 0; row < m_payloadListModel->rowCount(); ++row) {
        m_settings.setValue(QLatin1String(c_payloadKeyPrefix) + QString::number(row),
                            m_payloadListModel->index(row).data(PayloadModel::MessageRole));
    }
    m_settings.endGroup();
    m_settings.sync();
    SettingsStore::keepCopy(); // the turn ends here
}
