// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "WireNumber.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr int significantDigits = 6;
}

QString wireNumber(double value)
{
    const QString text = QString::number(finiteNumber(value), 'g', significantDigits);
    // The digits are the same, the zeros that the exponent stood for are written out.
    return text.contains(QLatin1Char('e')) ? QString::number(text.toDouble(), 'f', QLocale::FloatingPointShortest)
                                           : text;
}

double finiteNumber(double value)
{
    using Limits = std::numeric_limits<double>;
    return std::isnan(value) ? 0 : std::clamp(value, Limits::lowest(), Limits::max());
}
