// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQmlIntegration>

/// How a module is to predict passes. A value, copied whole. What is no property is never shown and never stored: it
/// goes to the module with the default, or holds what the module reported.
struct PrepassConfig
{
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(uchar predictionDuration MEMBER predictionDuration)
    Q_PROPERTY(double minElevation MEMBER minElevation)
    Q_PROPERTY(uchar minPassDuration MEMBER minPassDuration)

public:
    static constexpr double s_defaultMaxElevation = 90.0;
    static constexpr ushort s_defaultMaxPasses = 1000;
    static constexpr double s_defaultTimeMargin = 5.0;
    static constexpr uchar s_defaultComputationStep = 30;

    uchar predictionDuration = 0;                     ///< Span of the prediction, days
    double minElevation = 5.0;                        ///< Lowest elevation of a useful pass, degrees
    uchar minPassDuration = 5;                        ///< Shortest useful pass, minutes
    double maxElevation = s_defaultMaxElevation;      ///< Highest elevation of a useful pass, degrees
    ushort maxPasses = s_defaultMaxPasses;            ///< Largest number of passes to compute
    double timeMargin = s_defaultTimeMargin;          ///< In a unit of the module's
    uchar computationStep = s_defaultComputationStep; ///< In a unit of the module's
};
