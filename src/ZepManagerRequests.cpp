// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// One command, one answer: a request waits inside the call while the event loop goes on, and the answer arrives by the
// ordinary way of every line (ZepManagerDispatch.cpp). There is no queue, and answers are not matched to questions. On
// a lost line a request times out at once.

#include "Clock.h"
#include "EventWait.h"
#include "ZepManager.h"

#include <QCoreApplication>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {
constexpr std::chrono::milliseconds pauseAfterRequest{10}; // that the device gets between two commands
}

bool ZepManager::sendCommand(AtCmdHandler::CmdId id, const QStringList &params, ushort timeout)
{
    if (!m_atCmdHandler) {
        return false;
    }
    const QByteArray request = m_atCmdHandler->buildRequest(id, params);
    if (m_exportMode) {
        m_exportBuffer += QString::fromUtf8(request);
        return true;
    }
    return sendRaw(request, timeout);
}

bool ZepManager::sendRaw(const QByteArray &data, ushort timeout)
{
    const QPointer<ZepBoard> board = m_board;
    deliverHeldLines(); // what came before this request is not its answer
    if (isWaitPointless(board)) {
        return false;
    }
    m_logger->log(Logger::APP, QString::fromLatin1(data));
    m_requestFailed = false;
    m_requestPending = true;
    m_txRequested = data.startsWith("AT+TX=");
    if (!wakeUpBoard() && !m_serialPort->isLineLost()) {
        return false;
    }

    if (!m_serialPort->isLineLost()) {
        m_requestTimer->start(timeout);
        m_serialPort->write(data);
        ++m_waitDepth;
        EventWait::until([this, &board] {
            return !m_requestPending || !m_requestTimer->isActive() || isWaitPointless(board) ||
                   m_serialPort->isLineLost();
        });
        --m_waitDepth;
        m_requestTimer->stop();
    }
    if (!m_heldLines.isEmpty()) {
        QMetaObject::invokeMethod(this, &ZepManager::deliverHeldLines, Qt::QueuedConnection);
    }
    if (isWaitPointless(board)) {
        return false;
    }
    if (m_requestPending && m_serialPort->isLineLost()) {
        onRequestTimeout(); // no answer can come any more
        return false;
    }
    Clock::current()->sleep(pauseAfterRequest);
    return !m_requestFailed;
}

void ZepManager::ask(std::span<const Question> questions)
{
    const QPointer<ZepBoard> board = m_board;
    for (const Question &question : questions) {
        const bool answered = sendCommand(question.id, {}, shortTimeout);
        if (isWaitPointless(board)) {
            return;
        }
        if (!answered) {
            m_logger->log(Logger::APP, QString::fromLatin1(question.failure));
        }
    }
}

void ZepManager::onRequestTimeout()
{
    m_requestTimer->stop();
    m_requestFailed = true;
    m_logger->log(Logger::APP, u"AT command request timeout!"_s);
    m_requestPending = false;
}

bool ZepManager::wakeUpBoard()
{
    const QPointer<ZepBoard> board = m_board;
    if (board->isAwake()) {
        return true;
    }
    if (m_serialPort->isLineLost()) {
        return false; // the wake-up would never be reported
    }
    m_requestCancelled = false; // of a dialog that outlived its wait
    // The dialog closes whenever the board speaks of its state. If that is to say that it still sleeps, the user is
    // asked again: nobody may wait here without a Cancel button.
    QObject waiting;
    QObject::connect(board, &ZepBoard::isAwakeChanged, &waiting, [this, board] {
        if (!board->isAwake()) {
            Q_EMIT userActionRequested();
        }
    });
    Q_EMIT userActionRequested();
    while (!m_requestCancelled && !isWaitPointless(board) && !m_serialPort->isLineLost()) {
        if (board->isAwake()) {
            return true;
        }
        // The user may take a coffee: the wait sleeps between events instead of spinning.
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    m_requestCancelled = false;
    if (board) {
        QObject::disconnect(board, nullptr, &waiting, nullptr); // what follows is no news of the board
        board->setIsAwake(board->isAwake());                    // closes the dialogs of the other windows
    }
    return false;
}

void ZepManager::cancelModuleRequest()
{
    m_requestCancelled = true;
    m_logger->log(Logger::APP, u"Request has been cancelled"_s);
}

void ZepManager::requestCustomCmd(const QString &cmd)
{
    sendRaw(cmd.trimmed().toLatin1() + "\r\n", longTimeout);
    Q_EMIT customCmdCompleted();
}
