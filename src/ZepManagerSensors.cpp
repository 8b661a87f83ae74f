// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The sensors of a device: the whole of their model is sent in one pass and read back in another.

#include "SensorModel.h"
#include "ZepManager.h"

#include <limits>

using namespace Qt::StringLiterals;

const QMap<SensorModel::Id, AtCmdHandler::CmdId> ZepManager::sensorAlertCmdMap{
    {SensorModel::LIGHT, AtCmdHandler::ALRT_LIGHT},
    {SensorModel::ACCELEROMETER, AtCmdHandler::ALRT_ACC},
    {SensorModel::DRY_CONTACT, AtCmdHandler::ALRT_DRYC},
    {SensorModel::PUSH_BUTTON, AtCmdHandler::ALRT_PB},
};

void ZepManager::getSensorsConfig()
{
    static constexpr Question questions[] = {
        // command                 failure
        {AtCmdHandler::PACQ_SENS, "Unable to get sensors enable/disable status"},
        {AtCmdHandler::ALRT_SENS, "Unable to get sensor alerts status"},
        {AtCmdHandler::PACQ, "Unable to get acquisition period"},
    };
    if (!m_board || !m_board->sensorListModel() || !wakeUpBoard()) {
        return;
    }
    const QPointer<ZepBoard> board = m_board;
    const QMap<SensorModel::Id, Sensor *> sensors = board->sensorListModel()->sensorMap();
    for (auto sensor = sensors.cbegin(); sensor != sensors.cend(); ++sensor) {
        if (!sensor.value()->hasAlertCmd()) {
            continue;
        }
        const bool answered = sendCommand(sensorAlertCmdMap.value(sensor.key()), {}, shortTimeout);
        if (isWaitPointless(board)) {
            return;
        }
        if (!answered) {
            m_logger->log(Logger::APP, "Unable to get sensor alert from "_L1 + board->name());
        }
    }
    ask(questions);
}

bool ZepManager::setSensorsConfig()
{
    const QPointer<ZepBoard> board = m_board;
    if (!board || !board->sensorListModel()) {
        return true;
    }
    const auto send = [this, &board](AtCmdHandler::CmdId id, const QStringList &params, const char *failure) {
        if (sendCommand(id, params, shortTimeout)) {
            return true;
        }
        if (board) {
            m_logger->log(Logger::APP, QLatin1String(failure) + board->name());
        }
        return false;
    };
    const auto flag = [](bool set) { return set ? u"1"_s : u"0"_s; };

    QStringList enables;
    const QMap<SensorModel::Id, Sensor *> sensors = board->sensorListModel()->sensorMap();
    for (auto entry = sensors.cbegin(); entry != sensors.cend(); ++entry) {
        const Sensor *sensor = entry.value();
        if (entry.key() != SensorModel::PUSH_BUTTON) {
            enables << flag(sensor->enable());
        }
        if (!sensor->hasAlertCmd()) {
            continue;
        }
        QStringList params{flag(sensor->alert())};
        if (sensor->thresholdValues() != QLatin1String(Sensor::s_noThreshold)) {
            params << sensor->thresholdValues();
        }
        if (!send(sensorAlertCmdMap.value(entry.key()), params, "Unable to set sensor alert on ")) {
            return false; // the sensors may be gone with their board
        }
    }
    // Both lists tell what is acquired; of alert() only the alert commands speak.
    return send(AtCmdHandler::PACQ_SENS, enables, "Unable to enable/disable sensors on ") &&
           send(AtCmdHandler::ALRT_SENS, enables, "Unable to enable/disable sensor alerts on ") &&
           send(AtCmdHandler::PACQ, {QString::number(board->sensorListModel()->acquisitionPeriod())},
                "Unable to enable/disable sensor alerts on ");
}

void ZepManager::processSensorResponse()
{
    const AtCmdHandler &line = *m_atCmdHandler;
    SensorModel *sensors = m_board->sensorListModel();
    if (!sensors) {
        return; // the line is in the log
    }
    switch (line.cmdId()) {
    case AtCmdHandler::PACQ:
        sensors->setAcquisitionPeriod(
            static_cast<ushort>(qMin(line.paramUInt(0), quint32{std::numeric_limits<ushort>::max()})));
        return;
    case AtCmdHandler::PACQ_SENS:
    case AtCmdHandler::ALRT_SENS: // tells what is acquired as well: the later of the two decides
        for (uchar row = 0; row + 1 < line.paramCount(); ++row) {
            sensors->setEnable(row, line.paramUInt(static_cast<uchar>(row + 1)) != 0);
        }
        return;
    case AtCmdHandler::ALRT_PB:
        sensors->setAlert(SensorModel::PUSH_BUTTON, line.paramUInt(0) != 0);
        return;
    default: {
        const SensorModel::Id id = sensorAlertCmdMap.key(line.cmdId(), SensorModel::GNSS);
        sensors->setAlert(id, line.paramUInt(1) != 0);
        sensors->setThresholdValues(id, line.param(2));
        return;
    }
    }
}
