// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// What lets a module predict its passes: the clock, the position, the configuration, the bulletins and the question
// for the next pass; and the device's answers to them.

#include "PeriodicProfile.h"
#include "PrepassModel.h"
#include "PrepassProfile.h"
#include "ProcessLog.h"
#include "SatelliteAopModel.h"
#include "WireNumber.h"
#include "ZepManager.h"

#include <QMetaEnum>

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
const QString nextPassFilter = u"3"_s; // sent twice when the payload wants something back from the satellite
const QString unknownSatellite = u"NA"_s;
constexpr quint32 secondsOfDay = 86400;

/// The date and time in the device's form, "2026-1-7T9:5:0Z". Read apart, because read as one it would pass through
/// the computer's own time zone, in which some times of the year do not exist.
QDateTime deviceDate(const QString &text)
{
    const QDate date = QDate::fromString(text.section(u'T', 0, 0), u"yyyy-M-d"_s);
    const QTime time = QTime::fromString(text.section(u'T', 1), u"H:m:sZ"_s);
    return date.isValid() && time.isValid() ? QDateTime(date, time, Qt::UTC) : QDateTime();
}

QString shortDate(const QDateTime &date)
{
    return date.toString(u"ddd MMM d, hh:mm:ss"_s);
}

/// The nearest number that the type holds, fractions cut off.
template <typename Integer, typename Number> Integer confined(Number number)
{
    constexpr auto first = static_cast<Number>(std::numeric_limits<Integer>::min());
    constexpr auto last = static_cast<Number>(std::numeric_limits<Integer>::max());
    return static_cast<Integer>(std::clamp(number, first, last));
}

/// The key of a number of the enumeration; empty if it has none.
template <typename Enum> QString keyOf(quint32 number)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(confined<int>(qint64{number})));
}
} // namespace

void ZepManager::getModuleUtcDate()
{
    if (!sendCommand(AtCmdHandler::UDATE, {}, mediumTimeout) && m_board) {
        m_logger->log(Logger::APP, "Unable to get UTC date from "_L1 + m_board->name());
    }
}

bool ZepManager::setModuleUtcDate(const QString &isoDate)
{
    if (sendCommand(AtCmdHandler::UDATE, {isoDate}, mediumTimeout)) {
        m_tx->setCustomUtcTime(isoDate);
        return true;
    }
    if (m_board) {
        m_logger->log(Logger::APP, "Unable to set UTC date on "_L1 + m_board->name());
    }
    Q_EMIT m_tx->loadPrepassDataCompleted(QString()); // the view stops waiting
    return false;
}

void ZepManager::getPrepassEnable()
{
    if (!sendCommand(AtCmdHandler::PREPASS_EN, {}, shortTimeout) && m_board) {
        m_logger->log(Logger::APP, u"Unable to get prediction pass 'enable' status"_s);
    }
}

bool ZepManager::setPrepassEnable(bool enable)
{
    return sendCommand(AtCmdHandler::PREPASS_EN, {QString::number(enable ? 1 : 0)}, mediumTimeout);
}

void ZepManager::getPrepassConfig()
{
    if (!sendCommand(AtCmdHandler::PREPASS_CFG, {}, longTimeout) && m_board) {
        m_logger->log(Logger::APP, u"Unable to get prediction pass config"_s);
    }
}

bool ZepManager::setPrepassConfig(uchar predictionDuration, double minElevation, uchar minPassDuration,
                                  double maxElevation, ushort maxPasses, double timeMargin, uchar computationStep)
{
    const Position position = m_tx->prepassProfile()->position();
    const QDateTime start = m_tx->utcDateTime();
    const QStringList params{wireNumber(position.latitude),    wireNumber(position.longitude),
                             start.toString(Qt::ISODate),      start.addDays(predictionDuration).toString(Qt::ISODate),
                             wireNumber(minElevation),         wireNumber(maxElevation),
                             QString::number(minPassDuration), QString::number(maxPasses),
                             wireNumber(timeMargin),           QString::number(computationStep)};
    if (!sendCommand(AtCmdHandler::PREPASS_CFG, params, shortTimeout)) {
        if (m_board) {
            m_logger->log(Logger::APP, u"Unable to set prediction pass config"_s);
        }
        return false;
    }
    m_tx->prepassProfile()->setConfig(
        {predictionDuration, minElevation, minPassDuration, maxElevation, maxPasses, timeMargin, computationStep});
    return true;
}

void ZepManager::getGnssPosition()
{
    if (!sendCommand(AtCmdHandler::POS, {}, shortTimeout) && m_board) {
        m_logger->log(Logger::APP, u"Unable to get GNSS position"_s);
    }
}

bool ZepManager::setGnssPosition(double latitude, double longitude)
{
    PrepassProfile *profile = m_tx->prepassProfile();
    if (sendCommand(AtCmdHandler::POS, {wireNumber(latitude), wireNumber(longitude)}, shortTimeout)) {
        if (!m_exportMode) { // in which no device has accepted it
            profile->setPosition({latitude, longitude});
        }
        return true;
    }
    profile->setPosition(profile->position()); // the notification brings the fields back to the true value
    return false;
}

void ZepManager::getAopData()
{
    if (!sendCommand(AtCmdHandler::AOP, {}, shortTimeout) && m_board) {
        m_logger->log(Logger::APP, u"Unable to get AOP data"_s);
    }
}

bool ZepManager::setAopDataAndConstellationStatus()
{
    const QPointer<ZepBoard> board = m_board;
    const SatelliteAopModel *model = m_tx->prepassProfile()->satelliteAopModel();
    if (model->rowCount() == 0) {
        // Whoever sends a command while the download spins the event loop does not mean it for a file.
        const bool exporting = std::exchange(m_exportMode, false);
        const bool downloaded = m_tx->prepassProfile()->downloadAopData();
        if (isWaitPointless(board)) {
            return false;
        }
        m_exportMode = exporting;
        if (!downloaded) {
            m_logger->log(Logger::APP, u"Unable to fetch AOP data"_s);
            return false;
        }
    }

    // A copy: the answers that come in between may add to the list.
    const QList<SatelliteAop *> satellites = model->satellites();
    const auto isOff = [](const SatelliteAop *satellite) { return satellite->uplinkStatusText() == "OFF"_L1; };
    auto donor = std::find_if_not(satellites.cbegin(), satellites.cend(), isOff);
    if (donor == satellites.cend()) {
        qCCritical(lcEvents, "All satellites are OUT OF SERVICE!");
        donor = satellites.cbegin();
    }

    bool succeeded = false;
    for (const SatelliteAop *satellite : satellites) {
        if (isWaitPointless(board)) {
            return false;
        }
        if (!model->isModuleSatellite(satellite->ident)) {
            m_logger->log(Logger::APP, "Satellite '"_L1 + satellite->ident + "' not supported, pass"_L1);
            continue;
        }
        QStringList bulletin = satellite->aopAtParameters();
        if (isOff(satellite)) {
            bulletin = (*donor)->aopAtParameters();
            bulletin.front() = satellite->ident;
            m_logger->log(Logger::APP, "AOP data have expired for this satellite, copying data from "_L1 +
                                           (*donor)->satelliteName + " ("_L1 + (*donor)->ident + ")..."_L1);
        }
        succeeded = sendCommand(AtCmdHandler::AOP, bulletin, shortTimeout);
        if (!succeeded && board) {
            m_logger->log(Logger::APP, u"Unable to set AOP data"_s);
        }
        if (board && (board->module() == ZepBoard::ZEP2 || board->module() == ZepBoard::TBX)) {
            succeeded = sendCommand(AtCmdHandler::SAT, satellite->statusAtParameters(), shortTimeout);
            if (!succeeded) {
                m_logger->log(Logger::APP, u"Unable to set constellation status"_s);
            }
        }
    }
    return succeeded;
}

void ZepManager::getSatelliteNextPass(const Payload::Options &options)
{
    const QPointer<ZepBoard> board = m_board;
    m_tx->setComputingSatelliteNextPass(true);
    QStringList params;
    if (options.optionAck || options.optionMail) {
        params << nextPassFilter << nextPassFilter;
    }
    const bool hasBulletins =
        m_tx->prepassProfile()->satelliteAopModel()->rowCount() != 0 || m_tx->prepassProfile()->downloadAopData();
    // The user may have gone over to another device while the download waited; that one's log is not for this.
    if (!hasBulletins && !isWaitPointless(board)) {
        m_logger->log(Logger::APP, u"Unable to fetch AOP data"_s);
    }
    if (!isWaitPointless(board) && !sendCommand(AtCmdHandler::NEXTPASS, params, longTimeout) && board) {
        m_logger->log(Logger::APP, u"Unable to get satellite next pass"_s);
    }
    m_tx->setComputingSatelliteNextPass(false);
}

void ZepManager::getTxRedundancy()
{
    if (!sendCommand(AtCmdHandler::ZEP_REDUN, {}, shortTimeout) && m_board) {
        m_logger->log(Logger::APP, u"Unable to get Tx redundancy"_s);
    }
}

bool ZepManager::setTxRedundancy(uchar redundancy)
{
    if (sendCommand(AtCmdHandler::ZEP_REDUN, {QString::number(redundancy)}, shortTimeout)) {
        return true;
    }
    if (m_board) {
        m_logger->log(Logger::APP, u"Unable to set Tx redundancy"_s);
    }
    return false;
}

void ZepManager::processPredictionResponse()
{
    const AtCmdHandler &line = *m_atCmdHandler;
    switch (line.cmdId()) {
    case AtCmdHandler::PREPASS_EN:
        m_tx->selectReportedProfile(line.paramUInt(0) == 0 ? TxManager::PERIODIC : TxManager::PREPASS_ON_MODULE);
        return;
    case AtCmdHandler::POS: {
        const Position position{line.paramDouble(1), line.paramDouble(2)};
        m_tx->prepassProfile()->setPosition(position);
        m_logger->log(Logger::APP, "Beacon latitude: "_L1 + wireNumber(position.latitude) + u'°');
        m_logger->log(Logger::APP, "Beacon longitude: "_L1 + wireNumber(position.longitude) + u'°');
        return;
    }
    case AtCmdHandler::UDATE: {
        const QDateTime date = deviceDate(line.param(0));
        m_logger->log(Logger::APP, "UTC time: "_L1 + shortDate(date));
        m_tx->setCustomUtcTime(date.toString(Qt::ISODate));
        return;
    }
    case AtCmdHandler::ZEP_REDUN: {
        const uchar redundancy = confined<uchar>(line.paramUInt(0));
        if (m_tx->selectedProfile() == TxManager::PERIODIC) {
            // A sequence cannot send a payload zero times; 0 is also what an unreadable answer says.
            m_tx->periodicProfile()->setRedundancy(qMax(redundancy, uchar{1}));
        } else {
            m_tx->prepassProfile()->setRedundancy(redundancy);
        }
        return;
    }
    case AtCmdHandler::PREPASS_CFG:
        processPrepassConfig();
        return;
    case AtCmdHandler::AOP:
        processBulletin();
        return;
    case AtCmdHandler::SAT:
        processConstellationStatus();
        return;
    case AtCmdHandler::NEXTPASS:
        processNextPass();
        return;
    default:
        return; // of no prediction; processResponse() does not hand it here
    }
}

void ZepManager::processPrepassConfig()
{
    const AtCmdHandler &line = *m_atCmdHandler;
    PrepassConfig config;
    config.predictionDuration = confined<uchar>(deviceDate(line.param(3)).daysTo(deviceDate(line.param(4))));
    config.minElevation = line.paramDouble(5);
    config.maxElevation = line.paramDouble(6);
    config.minPassDuration = confined<uchar>(line.paramDouble(7));
    config.maxPasses = confined<ushort>(line.paramUInt(8));
    config.timeMargin = line.paramDouble(9);
    config.computationStep = confined<uchar>(line.paramUInt(10));
    m_tx->prepassProfile()->setConfig(config);
    m_logger->log(Logger::APP, u"Prediction pass configuration (respective order):"_s);
    m_logger->log(Logger::APP,
                  u"latitude (°), longitude (°), start date (UTC), end date (UTC), min elevation (°), max elevation "
                  "(°), min pass duration (mn), max nb of passes per satellite, linear time margin (nb of mn after 6 "
                  "months),computation step"_s);
}

void ZepManager::processBulletin()
{
    const AtCmdHandler &line = *m_atCmdHandler;
    if (line.param(0) == "end"_L1) {
        m_logger->log(Logger::APP, u"AOP parameters (respective order):"_s);
        m_logger->log(
            Logger::APP,
            u"satellite id, bulletin date (UTC), semi-major axis (km), orbit inclination (°), ascending node "
            "longitude (°), ascending node drift (°), orbit period (mn), semi-major axis drift (meter/day)"_s);
        return;
    }
    const QChar ident = line.paramChar(1).toUpper();
    if (ident.isNull()) {
        return; // a board that sends no bulletins: its lines are not read into fields
    }
    m_tx->prepassProfile()->satelliteAopModel()->updateOrAddSatellite(
        ident, deviceDate(line.param(2)), line.paramDouble(3), line.paramDouble(4), line.paramDouble(5),
        line.paramDouble(6), line.paramDouble(7), line.paramDouble(8), unknownSatellite, SatelliteAop::DNLK_NA,
        SatelliteAop::UPLK_NA);
}

void ZepManager::processConstellationStatus()
{
    const AtCmdHandler &line = *m_atCmdHandler;
    const QChar ident = line.paramChar(1);
    if (line.param(0) == "end"_L1 || ident.isNull()) {
        return;
    }
    m_logger->log(Logger::APP,
                  "Satellite "_L1 + m_tx->prepassProfile()->satelliteAopModel()->satelliteNameForIdent(ident) +
                      " ("_L1 + ident.toUpper() + ") - "_L1 + keyOf<SatelliteAop::DownlinkStatus>(line.paramUInt(2)) +
                      " - "_L1 + keyOf<SatelliteAop::UplinkStatus>(line.paramUInt(3)));
}

void ZepManager::processNextPass()
{
    const AtCmdHandler &line = *m_atCmdHandler;
    const PrepassProfile *profile = m_tx->prepassProfile();
    const QString name = profile->satelliteAopModel()->satelliteNameForIdent(line.paramChar(1));
    const QDateTime start = deviceDate(line.param(2));
    const QTime duration = QTime(0, 0).addSecs(static_cast<int>(line.paramUInt(4) % secondsOfDay));
    const double elevation = line.paramDouble(5);
    const bool expired = start.isValid() && start < m_tx->utcDateTime();
    profile->nextPassModel()->clear();
    profile->nextPassModel()->addPrepass(name, start, duration, elevation, expired);
    m_logger->log(Logger::APP, "Next satellite pass: "_L1 + shortDate(start));
}
