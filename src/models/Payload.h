// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

/// One user payload: a row of PayloadModel.
class Payload : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Status : int {
        NONE,     ///< Well formed, no Tx state
        ERROR,    ///< Malformed
        PENDING,  ///< Waits for its next Tx
        ACTIVE,   ///< A Tx is under way
        COMPLETE, ///< All its Tx are done
    };
    Q_ENUM(Status)

    /// How a payload is sent.
    struct Options
    {
        bool optionAck = false;       ///< Ask the satellite for an acknowledgement
        bool optionMail = false;      ///< Check for a downlink message
        bool optionImportant = false; ///< Higher repetition and quality of service
    };

    Payload(const QString &givenMessage, uchar givenRedundancy, QObject *parent);

    QString message;      ///< Hexadecimal text, no spaces
    uchar redundancy;     ///< Times it is sent in one repetition of the sequence
    Options options;      ///< All off at first
    uchar txCount = 0;    ///< Times it was sent in this repetition, for display
    Status status = NONE; ///< NONE or ERROR, the verdict of the last check; see PayloadModel
};
