// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The configuration of a device as a whole: read, sent, written to a file and read from one. What it consists of is
// told once, by the commands of an upload: an export keeps their text, an import takes it for answers of the device.

#include "LocalPath.h"
#include "PeriodicProfile.h"
#include "PrepassProfile.h"
#include "ProcessLog.h"
#include "ZepManager.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 lineLengthMax = 65536;   // bytes; no device has a line near it, a file that is no text soon does
constexpr qsizetype shownLengthMax = 256; // longer than any command that a device of this kind takes
constexpr auto lastCommand = "AT+RST=\r\n";

/// A line of any file, fit to be read in the log.
QString shownLine(const QString &line)
{
    QString shown = line.left(shownLengthMax);
    std::replace_if(
        shown.begin(), shown.end(), [](QChar c) { return c.category() == QChar::Other_Control; },
        QChar(QChar::ReplacementCharacter));
    return line.size() > shownLengthMax ? shown + u'…' : shown;
}

/// Why an import refuses a line, as the log says it; empty if it takes the line, which \a codec then holds.
QString importRefusal(AtCmdHandler *codec, const QByteArray &bytes)
{
    const QString line = QString::fromUtf8(bytes.trimmed());
    if (bytes.size() > lineLengthMax || !codec->parseMessage(line, true)) {
        return "Unable to parse configuration entry: "_L1 + shownLine(line);
    }
    return codec->cmdId() == AtCmdHandler::LORA_DEUI ? u"Configuration not allowed: device EUI cannot be set"_s
                                                     : QString();
}

/// The lines of an exported configuration that an import refuses.
QStringList linesRefusedByImport(const ZepBoard &board, QByteArray config)
{
    AtCmdHandler codec(nullptr, board.regexMap());
    QBuffer buffer(&config);
    buffer.open(QIODevice::ReadOnly | QIODevice::Text);
    QStringList refused;
    while (!buffer.atEnd()) {
        const QByteArray bytes = buffer.readLine();
        if (!importRefusal(&codec, bytes).isEmpty()) {
            refused << QString::fromUtf8(bytes.trimmed());
        }
    }
    return refused;
}
} // namespace

void ZepManager::endProcessing(const QPointer<ZepBoard> &board, const QString &msg, bool error)
{
    if (board) {
        setProcessingData(false, msg, error);
    }
}

void ZepManager::getConfig()
{
    // cppcheck-suppress variableScope ; the table stands above what goes through it
    static constexpr void (ZepManager::*readings[])() = {
        // PREPASS_EN selects the profile that ZEP_REDUN lands in.
        &ZepManager::getPrepassEnable, &ZepManager::getModuleUtcDate, &ZepManager::getTxRedundancy,
        &ZepManager::getLoRaConfig,    &ZepManager::getSensorsConfig, &ZepManager::getGnssPosition,
        &ZepManager::getAopData,       &ZepManager::getPrepassConfig,
    };
    const QPointer<ZepBoard> board = m_board;
    if (!board) {
        return;
    }
    setProcessingData(true);
    if (wakeUpBoard()) {
        for (const auto reading : readings) {
            if (isWaitPointless(board)) {
                break;
            }
            (this->*reading)();
        }
    }
    endProcessing(board);
}

void ZepManager::uploadConfig(bool enableLog)
{
    const QPointer<ZepBoard> board = m_board;
    if (!board) {
        return;
    }
    if (enableLog) {
        m_logger->log(Logger::APP, "Uploading current config to "_L1 + board->name() + "..."_L1);
    }
    setProcessingData(true);
    if (enableLog && !wakeUpBoard()) {
        endProcessing(board);
        return;
    }
    if (const QString failure = sendConfig(); !failure.isEmpty()) {
        endProcessing(board, failure, true);
        return;
    }
    setLoRaEnable();
    if (board && m_tx->loraEnabled()) {
        setLoRaConfig();
    }
    // cppcheck-suppress identicalConditionAfterEarlyExit ; the requests above wait, and the board may go meanwhile
    if (!board) {
        return;
    }
    if (enableLog) {
        m_logger->log(Logger::APP, "Reseting "_L1 + board->name() + "..."_L1);
    }
    if (!resetDevice()) {
        endProcessing(board, u"Unable to reset device!"_s, true);
    } // else the device ends it, by reporting that it has restarted with the new parameters
}

QString ZepManager::sendConfig()
{
    const PrepassProfile *prepass = m_tx->prepassProfile();
    if (!setSensorsConfig()) {
        return u"Unable to set sensor configuration!"_s;
    }
    const bool predicts = m_tx->selectedProfile() != TxManager::PERIODIC;
    const bool sent = setGnssPosition(prepass->position().latitude, prepass->position().longitude) &&
                      setModuleUtcDate(m_tx->utcDateTime().toString(Qt::ISODate)) &&
                      setAopDataAndConstellationStatus() && setPrepassEnable(predicts) &&
                      setTxRedundancy(predicts ? prepass->redundancy() : m_tx->periodicProfile()->redundancy());
    if (!sent) {
        return u"Unable to set Tx profile configuration!"_s;
    }
    const PrepassConfig config = prepass->config();
    if (predicts && !setPrepassConfig(config.predictionDuration, config.minElevation, config.minPassDuration)) {
        return u"Unable to set Prepass configuration!"_s;
    }
    return {};
}

void ZepManager::exportConfig(const QString &filePath)
{
    const QPointer<ZepBoard> board = m_board;
    if (!board) {
        return;
    }
    m_logger->log(Logger::APP, "Exporting config to "_L1 + localPath(filePath) + "..."_L1);
    m_exportBuffer.clear(); // of an export whose session ended in the middle of it
    m_exportMode = true;
    uploadConfig(false);
    m_exportMode = false;
    const QString config = std::exchange(m_exportBuffer, QString());
    if (isWaitPointless(board)) { // a download of bulletins lets the user go
        qCCritical(lcEvents, "The session ended during an export: nothing was written");
        endProcessing(board);
        return;
    }
    if (!config.endsWith(QLatin1String(lastCommand))) {
        qCCritical(lcEvents, "The exported configuration is not complete");
    }
    m_logger->exportLogsToFile(filePath, config, false, Logger::SECRET);
    const QStringList refused = linesRefusedByImport(*board, config.toUtf8());
    for (const QString &line : refused) {
        m_logger->log(Logger::APP, "Exported entry cannot be imported: "_L1 + shownLine(line));
    }
    setProcessingData(false, u"Configuration exported!"_s);
    m_logger->log(Logger::APP, u"Config exported successfully!"_s);
}

void ZepManager::importConfig(const QString &filePath)
{
    if (!m_atCmdHandler) {
        return;
    }
    const QPointer<ZepBoard> board = m_board;
    const QString path = localPath(filePath);
    m_logger->log(Logger::APP, "Importing config from "_L1 + path + "..."_L1);
    const bool replayed = replayConfig(path);
    if (!board) {
        return;
    }
    if (replayed) {
        setProcessingData(false, u"Configuration imported!"_s);
        m_logger->log(Logger::APP, u"Config imported successfully!"_s);
    } else {
        setProcessingData(false, u"Unable to import config!"_s, true);
        m_logger->log(Logger::APP, u"Unable to import config!"_s);
    }
}

bool ZepManager::replayConfig(const QString &path)
{
    QFile file(path);
    const bool isFile = QFileInfo(path).isFile(); // opening a pipe would wait for its other end
    if (!isFile || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qCCritical(lcEvents).noquote() << "Unable to read" << path
                                       << (isFile ? file.errorString() : u"which is no file"_s);
        return true; // counts as an empty file
    }
    while (!file.atEnd()) {
        const QByteArray bytes = file.readLine(lineLengthMax + 2); // enough of a longer line to be refused
        if (const QString refusal = importRefusal(m_atCmdHandler, bytes); !refusal.isEmpty()) {
            m_logger->log(Logger::APP, refusal);
            return false;
        }
        processResponse();
        if (!m_atCmdHandler) {
            return false; // the session ended inside: a device's assertion flushes what is queued
        }
    }
    return true;
}
