// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZepManager.h"
#include "Assertion.h"
#include "EventWait.h"
#include "SessionJournal.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

#include <functional>

ZepManager::ZepManager(QObject *parent, SerialPortManager *serialPort)
    : QObject(parent)
    , m_serialPort(serialPort != nullptr ? serialPort : new SerialPortManager)
    , m_logger(new Logger(this))
{
    m_serialPort->setParent(this);
    using namespace std::placeholders;
    m_tx = new TxManager(m_logger, std::bind(&ZepManager::requestTx, this, _1, _2, _3),
                         std::bind(&ZepManager::getSatelliteNextPass, this, _1), this);
    QObject::connect(m_tx, &TxManager::setRadioConfRequest, this, &ZepManager::setRadioConf);
    m_journal = new SessionJournal(this);
    setAssertionHook([manager = QPointer(this)](const QByteArray &reason) {
        if (manager) {
            manager->m_journal->keepReason(reason);
            manager->saveSettings();
        }
    });

    m_requestTimer = new QTimer(this);
    QObject::connect(m_serialPort, &SerialPortManager::doneReading, this, &ZepManager::onSerialRead);
    QObject::connect(m_serialPort, &SerialPortManager::serialError, this, &ZepManager::onSerialError);
    QObject::connect(m_requestTimer, &QTimer::timeout, this, &ZepManager::onRequestTimeout);
    m_requestTimer->setSingleShot(true);
    m_requestTimer->setTimerType(Qt::PreciseTimer); // the default may be five percent off

    QCoreApplication::instance()->installEventFilter(this);
}

ZepManager *ZepManager::create(QQmlEngine *, QJSEngine *)
{
    return new ZepManager(nullptr);
}

bool ZepManager::eventFilter(QObject *watched, QEvent *event)
{
    // A wait that spins the event loop inside a call never sees the main loop end; this event is every way to quit.
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance()) {
        m_closing = true;
        m_tx->settleAck(); // ends the waits for an answer
    }
    return QObject::eventFilter(watched, event);
}

bool ZepManager::isInputHeld() const
{
    return EventWait::isInputHeld();
}

void ZepManager::saveSettings()
{
    m_tx->saveSettings();
}

void ZepManager::setMode(Mode mode)
{
    m_mode = mode;
}

void ZepManager::setProcessingData(bool uploading, const QString &msg, bool error)
{
    m_processingData = uploading;
    Q_EMIT processingDataChanged(msg, error);
}
