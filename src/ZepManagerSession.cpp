// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The two ends of a session with a device, and the reading of what the device is.

#include "Assertion.h"
#include "EventWait.h"
#include "Ranger.h"
#include "TBX.h"
#include "Zep1.h"
#include "Zep2.h"
#include "ZepManager.h"

using namespace Qt::StringLiterals;

namespace {
constexpr quint32 slowBaudRate = 9600;
constexpr quint32 fastBaudRate = 115200;
constexpr std::chrono::milliseconds transmissionEndTimeout{6000}; // that a transmission under way gets to be answered
constexpr auto source = "src/ZepManager";

quint32 baudRateOf(ZepBoard::Module module, const QString &text)
{
    if (text == "115200"_L1 || (text == "Default"_L1 && module == ZepBoard::RANGER)) {
        return fastBaudRate;
    }
    return slowBaudRate;
}

ZepBoard *createBoard(ZepBoard::Module module, quint32 baudRate, QObject *parent)
{
    switch (module) {
    case ZepBoard::ZEP1:
        return new Zep1(parent, baudRate);
    case ZepBoard::ZEP2:
        return new Zep2(parent, baudRate);
    case ZepBoard::TBX:
        return new TBX(parent, baudRate);
    case ZepBoard::RANGER:
        return new Ranger(parent, baudRate);
    case ZepBoard::NA:
        break;
    }
    ZEPGUI_ASSERT(false, "Invalid ZEP module / Sarvane device value", source);
    return nullptr;
}
} // namespace

void ZepManager::connect(ZepBoard::Module module, const QString &portName, const QString &baudrate)
{
    const QPointer<ZepBoard> board = createBoard(module, baudRateOf(module, baudrate), this);
    m_board = board;
    Q_EMIT boardChanged();
    m_atCmdHandler = new AtCmdHandler(this, board->regexMap());
    m_serialPort->configure(board->portSettings());
    board->setModule(module);
    board->setPort(portName);

    if (!m_serialPort->open(portName)) {
        return;
    }
    const bool answered = ping();
    if (isWaitPointless(board)) {
        return; // disconnect() came in between, and has said all there is to say
    }
    if (answered) {
        m_serialPort->rememberPort(portName);
        Q_EMIT connected();
        m_logger->log(Logger::APP, board->name() + " connected on port "_L1 + portName);
        initBoard(module);
    } else if (m_serialPort->isOpen()) { // a line lost meanwhile has been told
        m_serialPort->close();
        Q_EMIT m_serialPort->serialError("Unable to contact "_L1 + board->name());
    }
}

void ZepManager::initBoard(ZepBoard::Module module)
{
    const QPointer<ZepBoard> board = m_board;
    m_tx->modulationModel()->clear();
    getHwInfo();
    if (!board) {
        return;
    }

    const auto leaveProfileOfModule = [this] {
        if (m_tx->selectedProfile() == TxManager::PREPASS_ON_MODULE) {
            m_tx->setSelectedProfile(TxManager::PREPASS);
        }
    };
    switch (module) {
    case ZepBoard::ZEP1:
        leaveProfileOfModule();
        if (m_mode == EXPERT) {
            getTxFrequency();
            getTxPower();
        }
        break;
    case ZepBoard::ZEP2:
    case ZepBoard::TBX:
        leaveProfileOfModule();
        setModuleUtcDate(m_tx->utcDateTime().toString(Qt::ISODate));
        break;
    case ZepBoard::RANGER:
        getConfig();
        return;
    case ZepBoard::NA:
        ZEPGUI_ASSERT(false, "Invalid ZEP module / Sarvane device value", source);
    }
    if (board) {
        m_tx->reloadPrepassData();
    }
}

void ZepManager::getHwInfo()
{
    const QPointer<ZepBoard> board = m_board;
    if (!board) {
        return;
    }
    getId();
    getFirmwareVersion();
    // cppcheck-suppress identicalConditionAfterEarlyExit ; the requests above wait, and the board may go meanwhile
    if (!board) {
        return;
    }
    switch (board->module()) {
    case ZepBoard::ZEP1:
        getSerialNumber();
        break;
    case ZepBoard::ZEP2:
    case ZepBoard::TBX:
        getAddr();
        getRadioConfig();
        break;
    case ZepBoard::RANGER:
    case ZepBoard::NA:
        break;
    }
}

void ZepManager::onSerialError(const QString &error)
{
    if (m_serialPort->isLineLost()) {
        m_logger->log(Logger::APP, error);
        m_tx->onLineLost();
    }
}

void ZepManager::disconnect()
{
    bringTransmissionToRest();
    m_heldLines.clear();
    delete m_atCmdHandler;
    delete m_board;
    m_serialPort->close();
    m_serialPort->enumerate();
    if (m_processingData) {
        setProcessingData(false); // what waits for this device waits for nothing
    }
    Q_EMIT disconnected();
}

void ZepManager::bringTransmissionToRest()
{
    m_tx->stop();

    EventWait::until([this] { return !m_tx->ackPending() || m_closing; }, transmissionEndTimeout);
    m_tx->settleAck();
    m_tx->resetLoraConfig();
    m_tx->clearPrepassData(false); // the path of the file stays for the next session
    m_tx->applyUtcOffset(0, false);
}
