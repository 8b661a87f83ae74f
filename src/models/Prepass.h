// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QtQmlIntegration>

/// One period of visibility of one satellite: a row of PrepassModel.
class Prepass : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    using QObject::QObject;

    QString satelliteName;      ///< "NA" when not known
    QDateTime startUTC;         ///< UTC; invalid when not known
    QTime duration;             ///< A length, as a time of day; may be invalid, which counts as none
    double middleElevation = 0; ///< Degrees, at mid-pass
    bool isActive = false;      ///< The pass is in progress
};
