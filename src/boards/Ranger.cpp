// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Ranger.h"

#include "ProcessLog.h"
#include "ResponseGrammar.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {
constexpr int sensorFlagCount = 7; // the push button has none
constexpr int euiByteCount = 8;
constexpr int keyByteCount = 16;
} // namespace

Ranger::Ranger(QObject *parent, quint32 baudRate) : ZepBoard(parent)
{
    const QString flag = u'(' + AT_RE_BOOL + u')';
    const QString sensorFlags = repeatGroups(sensorFlagCount, AT_RE_BOOL);
    const QString eui = repeatGroups(euiByteCount, AT_RE_HEX_DIGIT + "{2}"_L1);
    const QString key = repeatGroups(keyByteCount, AT_RE_HEX_DIGIT + "{2}"_L1);

    m_portSettings.baudRate = static_cast<qint32>(baudRate);
    m_regexMap = {
        // command             data
        {AtCmdHandler::OK, AT_RE_CMD_OK},
        {AtCmdHandler::ERROR, AT_RE_CMD_ERROR},
        {AtCmdHandler::ID, AT_RE_CMD_ID},
        {AtCmdHandler::FW, AT_RE_CMD_FW},
        {AtCmdHandler::PREPASS_EN, AT_RE_CMD_PREPASS_EN},
        {AtCmdHandler::PREPASS_CFG, AT_RE_CMD_PREPASS_CFG},
        {AtCmdHandler::POS, AT_RE_CMD_POS},
        {AtCmdHandler::AOP, AT_RE_CMD_AOP},
        {AtCmdHandler::UDATE, AT_RE_CMD_UDATE},
        {AtCmdHandler::NEXTPASS, AT_RE_CMD_NEXTPASS},
        {AtCmdHandler::PACQ, "^(?<PACQ>"_L1 + AT_RE_INTEGER + ")$"_L1},
        {AtCmdHandler::PACQ_SENS, "^(?<PACQ_SENS>"_L1 + sensorFlags + ")$"_L1},
        {AtCmdHandler::ALRT_SENS, "^(?<ALRT_SENS>"_L1 + sensorFlags + ")$"_L1},
        // The whole is not named after this command, so parameter 0 stays empty; nobody reads it. Both thresholds
        // are one field.
        {AtCmdHandler::ALRT_LIGHT,
         "^(?<ALRT_SENS>"_L1 + flag + ",("_L1 + AT_RE_INTEGER + u',' + AT_RE_INTEGER + "))$"_L1},
        {AtCmdHandler::ALRT_ACC, "^(?<ALRT_ACC>"_L1 + flag + ",("_L1 + AT_RE_INTEGER + "))$"_L1},
        {AtCmdHandler::ALRT_DRYC, "^(?<ALRT_DRYC>"_L1 + flag + u',' + flag + ")$"_L1},
        {AtCmdHandler::ALRT_PB, "^(?<ALRT_PB>"_L1 + AT_RE_BOOL + ")$"_L1},
        {AtCmdHandler::ZEP_REDUN, "^(?<ZEP_REDUN>"_L1 + AT_RE_INTEGER + ")$"_L1},
        {AtCmdHandler::LORA_EN, "^(?<LORA_EN>"_L1 + AT_RE_BOOL + ")$"_L1},
        {AtCmdHandler::LORA_REDUN, "^(?<LORA_REDUN>"_L1 + AT_RE_INTEGER + ")$"_L1},
        {AtCmdHandler::LORA_ACK, "^(?<LORA_ACK>"_L1 + AT_RE_BOOL + ")$"_L1},
        {AtCmdHandler::LORA_DEUI, "^(?<LORA_DEUI>"_L1 + eui + ")$"_L1},
        {AtCmdHandler::LORA_AEUI, "^(?<LORA_AEUI>"_L1 + eui + ")$"_L1},
        {AtCmdHandler::LORA_AKEY, "^(?<LORA_AKEY>"_L1 + key + ")$"_L1},
    };

    m_isAwake = false; // it has to be woken first
    m_loraCompatible = true;
    m_loraMinVersion = QString::number(1) + u'.' + QString::number(4);
    m_logSource = Logger::RNG;

    const auto sensor = [this](const char *name, bool hasAlertCmd, const char *thresholdTitle = "",
                               const char *thresholdValues = "") {
        return new Sensor(this, QString::fromLatin1(name), true, false, hasAlertCmd,
                          QString::fromLatin1(thresholdTitle), QString::fromLatin1(thresholdValues));
    };
    const QMap<SensorModel::Id, Sensor *> sensors{
        // id                       name  alert command  thresholds
        {SensorModel::GNSS, sensor("GNSS", false)},
        {SensorModel::TEMPERATURE, sensor("Temperature", false)},
        {SensorModel::HUMIDITY, sensor("Humidity", false)},
        {SensorModel::PRESSURE, sensor("Pressure", false)},
        {SensorModel::LIGHT, sensor("Light", true, "Low,High", "400,3000")},
        {SensorModel::ACCELEROMETER, sensor("Accelerometer", true, "Bound", "4000")},
        {SensorModel::DRY_CONTACT, sensor("Dry contact", true, "Active level", "1")},
        {SensorModel::PUSH_BUTTON, sensor("Push button", true)},
    };
    m_sensorListModel = new SensorModel(this, sensors);
}

void Ranger::setFirmwareVersion(const QString &firmwareVersion)
{
    ZepBoard::setFirmwareVersion(firmwareVersion);
    m_loraStackIntegrated = firmwareHasLoRa();
    Q_EMIT loraStackIntegratedChanged();
}

bool Ranger::firmwareHasLoRa() const
{
    // The dots take any character between the numbers.
    static const QRegularExpression version(uR"(^\d+,SW(?<MAJOR>\d).(?<MINOR>\d).(?<PATCH>\d)$)"_s);
    const QRegularExpressionMatch match = version.match(m_firmwareVersion);
    if (!match.hasMatch()) {
        qCCritical(lcEvents, "Unable to identify Ranger firmware version and detect LoRa connectivity status");
        return false;
    }
    const int major = match.captured(u"MAJOR").toInt();
    const int minor = match.captured(u"MINOR").toInt();
    return major >= 2 || (major == 1 && minor >= 4);
}
