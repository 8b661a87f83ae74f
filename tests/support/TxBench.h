// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTimer>

#include "Criticals.h"
#include "Logger.h"
#include "PayloadModel.h"
#include "PeriodicProfile.h"
#include "TxManager.h"

/// A TxManager with a recording device on its callbacks, its log without stamps, and settings and a working directory
/// of its own.
struct TxBench
{
    TxBench()
    {
        failOnCritical();
        QCoreApplication::setOrganizationName("zepgui-tests");
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        QDir::setCurrent(folder.path());
        QObject::connect(&logger, &Logger::logCreated, &logger,
                         [this](const QString &line) { log << line.section(" [APP] ", 1); });
    }

    TxManager &create()
    {
        manager = std::make_unique<TxManager>(
            &logger,
            [this](const QString &data, const Payload::Options &options, bool flush) {
                sent << (flush ? "flush" + data : data);
                lastOptions = options;
                duringRequest();
                return accept;
            },
            [this](const Payload::Options &options) {
                sent << (options.optionAck ? "nextpass+ack" : "nextpass");
                duringNextPass();
            });
        scheduleTimer = manager->findChild<QTimer *>("scheduleTimer");
        return *manager;
    }

    /// From now on each state that a view is told goes to \a seen, as "row:state".
    void recordStates(QStringList &seen)
    {
        QObject::connect(manager->payloadListModel(), &PayloadModel::dataChanged, manager.get(),
                         [&seen](const QModelIndex &row, const QModelIndex &, const QList<int> &roles) {
                             if (roles.contains(PayloadModel::StatusRole)) {
                                 seen << QString("%1:%2").arg(row.row()).arg(row.data(roles[0]).toInt());
                             }
                         });
    }

    QTemporaryDir folder;
    Logger logger;
    QStringList log;
    QStringList sent; // messages, "flush", and "nextpass" or "nextpass+ack"
    Payload::Options lastOptions;
    std::function<void()> duringRequest = [] {};
    std::function<void()> duringNextPass = [] {};
    bool accept = true;
    std::unique_ptr<TxManager> manager;
    QTimer *scheduleTimer = nullptr;
};
