// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Options.h"

#include <QDateTime>
#include <QStringList>

#include <functional>
#include <vector>

/// What a device answers in an ERROR line.
enum class ErrorCode {
    None = 0,
    Format = 2,
    MissingParameters = 3,
    TooManyParameters = 4,
    Value = 5,
    UnknownCommand = 6,
    InvalidCommandWord = 7,
    MessageLength = 20,
    QueueFull = 21,
    QueueEmpty = 22,
};

/// The device's own answer to one request: lines without their ends, and what begins once they have left.
struct Answer
{
    QStringList lines;
    std::function<void()> afterwards;

    [[nodiscard]] static Answer ok(std::function<void()> afterwards = {});
    [[nodiscard]] static Answer value(const QString &command, const QString &data);
    [[nodiscard]] static Answer error(ErrorCode code);
};

/// One parameter of a request as the device demands it. Integer and Decimal: from min to max, and in Integer only
/// min plus a multiple of step.
struct Field
{
    enum class Kind { Integer, Decimal, HexByte, Hex, Date };

    Kind kind;
    double min = 0;
    double max = 0;
    double step = 1;

    /// Format for a text that is nothing of the kind, Value for one that is and does not fit.
    [[nodiscard]] ErrorCode check(const QString &text) const;
};

/// One request that a board knows. A command with no query takes "?" for a parameter; one with no set can only be
/// queried. A parameter without a field is left to the set function to judge.
struct Command
{
    QString name;
    Boards boards;
    int minParams = 0;
    int maxParams = 0;
    std::vector<Field> fields;
    std::function<Answer()> query;
    std::function<Answer(const QStringList &)> set;

    /// Judges the text behind "=" and carries the request out.
    [[nodiscard]] Answer run(const QString &data) const;
};

/// Reads the device's date form, such as 2026-1-5T7:03:09Z; invalid for anything else.
[[nodiscard]] QDateTime readDeviceDate(const QString &text);
[[nodiscard]] QString deviceDate(const QDateTime &date);
