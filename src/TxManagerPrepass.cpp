// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The profile PREPASS: the imported table of passes, kept in step with the clock, and the Tx timed to fall inside them.

#include "TxManager.h"

#include <limits>
#include <utility>

#include <QFile>
#include <QTimer>

#include "EventWait.h"
#include "LocalPath.h"
#include "PayloadModel.h"
#include "PrepassModel.h"
#include "ProcessLog.h"

namespace {

constexpr int c_txStep = 60000; // ms between two Tx inside a pass
constexpr std::chrono::milliseconds c_lastAnswerTimeout{6000};

} // namespace

// By reference on purpose: a reload hands in m_csvFilePath itself, so that a remembered file whose passes are all over
// is forgotten, while a file that the user has just chosen stays.
void TxManager::importPrepassData(const QString &filePath)
{
    if (filePath.isEmpty()) {
        Q_EMIT loadPrepassDataCompleted(QString());
        return;
    }
    QFile file(localPath(filePath));
    const bool isOther = isOtherThanFile(file.fileName());
    if (isOther || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qCCritical(lcEvents).noquote() << (isOther ? QStringLiteral("Not a file") : file.errorString());
        Q_EMIT loadPrepassDataCompleted(QStringLiteral("Error: Unable to open file: ") + file.fileName());
        return;
    }
    if (!m_prepassListModel->loadFromCsv(file, m_utcTime)) {
        Q_EMIT loadPrepassDataCompleted(
            QStringLiteral("Error: CSV file could not be parsed!\nCheck file syntax or column headers.\n\n"
                           "Export from HelioWeb with the following format:\n- Date: MM-dd-yyyy\n- Time: 24h\n"
                           "- Time zone: UTC\n- CSV separator: ; or ,"));
    } else if (m_prepassListModel->rowCount() > 0) {
        Q_EMIT loadPrepassDataCompleted(QString());
    } else {
        clearPrepassData(true);
        Q_EMIT loadPrepassDataCompleted(
            QStringLiteral("Error: All satellite prepass date(s) in this file have expired!"));
    }
    m_csvFilePath = filePath;
    beginTable();
    Q_EMIT nextPassIdxChanged();
}

void TxManager::clearPrepassData(bool eraseFilePath)
{
    m_prepassListModel->clear();
    beginTable();
    if (eraseFilePath) {
        m_csvFilePath.clear();
    }
}

void TxManager::beginTable()
{
    m_nextPassIdx = 0;
    if (m_selectedProfile != PREPASS_ON_MODULE) { // where it counts the module's own pass
        m_activePassIdxCount = 0;
    }
}

void TxManager::reloadPrepassData()
{
    importPrepassData(m_csvFilePath);
}

bool TxManager::hasNextPass() const
{
    return m_nextPassIdx < static_cast<qulonglong>(m_prepassListModel->rowCount());
}

void TxManager::walkPasses()
{
    const auto tell = [this] {
        Q_EMIT nextPassIdxChanged();
        log(QString::number(m_activePassIdxCount) + QStringLiteral(" satellite(s) available"));
    };

    if (hasNextPass() && m_prepassListModel->getStartUtc(m_nextPassIdx) < m_utcTime) {
        m_prepassListModel->setIsActive(static_cast<uchar>(m_nextPassIdx), true);
        ++m_nextPassIdx;
        ++m_activePassIdxCount;
        tell();
    }
    // The row that moves into the place of one that ended waits for the next second.
    for (qulonglong row = 0; row < m_activePassIdxCount; ++row) {
        if (m_prepassListModel->getEndUtc(row) < m_utcTime) {
            m_prepassListModel->removeAt(static_cast<uchar>(row));
            --m_nextPassIdx;
            --m_activePassIdxCount;
            tell();
        }
    }
}

void TxManager::schedulePrepassTx()
{
    // Passes that ended before the walk has reached them, as while a module predicted the passes: not to be sent in.
    while (hasNextPass() && m_prepassListModel->getEndUtc(m_nextPassIdx) < m_utcTime) {
        m_prepassListModel->removeAt(static_cast<uchar>(m_nextPassIdx));
    }
    const bool hasNext = hasNextPass();
    const qint64 toNext = hasNext ? m_utcTime.msecsTo(m_prepassListModel->getStartUtc(m_nextPassIdx)) : c_txStep;
    if (toNext > std::numeric_limits<int>::max()) {
        stop();
        Q_EMIT txErrorOccured(QStringLiteral("Error: Next satellite pass date is too far from today!"));
        return;
    }
    if (isFirstTx()) {
        if (!checkPayloadBeforeTx(m_currentIndex)) {
            return;
        }
        if (m_activePassIdxCount != 0) {
            onScheduleOver(); // inside a pass the first Tx does not wait, and arms what follows
            return;
        }
        if (!hasNext) {
            endUsedUpSequence(); // the clock has stepped over the passes that were left
            return;
        }
        m_payloadListModel->setStatus(m_currentIndex, Payload::PENDING);
        armSchedule(toNext); // at once for a pass that has begun and that the walk has not reached yet
        return;
    }
    const bool staysInPass = m_activePassIdxCount != 0 && m_nextPassIdx != 0 &&
                             m_utcTime.msecsTo(m_prepassListModel->getEndUtc(m_nextPassIdx - 1)) > c_txStep;
    if (staysInPass || toNext < c_txStep) { // or falls inside the next pass
        armSchedule(c_txStep);
    } else if (hasNext) {
        armSchedule(toNext);
    } else {
        endUsedUpSequence();
    }
}

void TxManager::endUsedUpSequence()
{
    if (std::exchange(m_tableUsedUp, true)) {
        return; // what comes behind the answer that is waited for below
    }
    EventWait::until([this] { return !m_ackPending; }, c_lastAnswerTimeout); // it falls with the application, too
    m_tableUsedUp = false;
    stop();
    Q_EMIT txErrorOccured(QStringLiteral("Error: No more prepass data to continue Tx scheduling.\n"
                                         "Please import new data from HelioWeb.\nStopping sequence..."));
}
