// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PrepassProfile.h"

#include <memory>

#include <QDateTime>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSettings>
#include <QUrl>

#include "PrepassModel.h"
#include "ProcessLog.h"
#include "SatelliteAopModel.h"
#include "SettingText.h"

namespace {

constexpr auto c_configFile = "config.ini";
constexpr auto c_urlKey = "Prepass/aopWebRequestUrl";
// A reserved domain: a fresh program calls nobody.
constexpr auto c_defaultUrl = "https://mdr.sarvane.example/mdr/resources/"
                              "fleetfeed?login=FEEDGUEST&password=QTR4711ABC&application=fleetfeed-app";
constexpr int c_transferTimeout = 5000;           // ms without data
constexpr qsizetype c_documentSizeMax = 16 << 20; // bytes; a satellite takes some hundred
constexpr qint64 c_readBufferSize = 1 << 20;      // bytes that may wait to be read

QString configuredUrl()
{
    const QSettings config(QString::fromLatin1(c_configFile), QSettings::IniFormat);
    return settingText(config.value(QLatin1String(c_urlKey), QString::fromLatin1(c_defaultUrl)));
}

} // namespace

PrepassProfile::PrepassProfile(QObject *parent)
    : QObject(parent), m_satelliteAopModel(new SatelliteAopModel(this)), m_nextPassModel(new PrepassModel(this))
{
    m_nextPassModel->addPrepass(QStringLiteral("NA"), QDateTime(), QTime(0, 0), 0, false);
    m_aopWebRequestUrl = configuredUrl();
}

void PrepassProfile::setPosition(Position position)
{
    m_position = position;
    Q_EMIT positionChanged();
}

void PrepassProfile::setConfig(const PrepassConfig &config)
{
    m_config = config;
    Q_EMIT configChanged();
}

void PrepassProfile::setRedundancy(uchar redundancy)
{
    m_redundancy = redundancy;
    Q_EMIT redundancyChanged();
}

void PrepassProfile::setConfigMinElevation(double minElevation)
{
    m_config.minElevation = minElevation;
    Q_EMIT configChanged();
}

void PrepassProfile::setConfigMinPassDuration(uchar minPassDuration)
{
    m_config.minPassDuration = minPassDuration;
    Q_EMIT configChanged();
}

bool PrepassProfile::downloadAopData()
{
    QEventLoop loop;
    QNetworkAccessManager network;
    QNetworkRequest request(QUrl(m_aopWebRequestUrl, QUrl::TolerantMode));
    request.setTransferTimeout(c_transferTimeout);
    QByteArray body;
    const std::unique_ptr<QNetworkReply> reply(network.get(request));
    reply->setReadBufferSize(c_readBufferSize);
    // Read as it arrives, and no further than it takes to see that it is too large: an answer may have no end.
    const auto readOn = [&body, source = reply.get()] {
        body += source->read(c_documentSizeMax + 1 - body.size());
        if (body.size() > c_documentSizeMax && source->isRunning()) {
            source->abort();
        }
    };
    connect(reply.get(), &QNetworkReply::readyRead, &loop, readOn);
    connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    if (!reply->isFinished()) {
        reply->abort(); // the application is quitting: what has come so far is no document
    }

    if (reply->error() == QNetworkReply::NoError) {
        readOn();
    }
    const bool isTooLarge = body.size() > c_documentSizeMax;
    if (reply->error() != QNetworkReply::NoError || body.isEmpty() || isTooLarge) {
        if (isTooLarge) {
            qCCritical(lcEvents, "Error: AOP data of more than %lld bytes", qint64{c_documentSizeMax});
        } else {
            qCCritical(lcEvents) << "Error:" << reply->error();
        }
        Q_EMIT aopDataDownloadFinished(
            QStringLiteral("Unable to fetch last AOP data from server. Check your internet access."));
        return false;
    }
    if (!m_satelliteAopModel->loadAopJson(body)) {
        Q_EMIT aopDataDownloadFinished(QStringLiteral("Unable to parse AOP data from server."));
        return false;
    }
    Q_EMIT aopDataDownloadFinished(QString());
    return true;
}
