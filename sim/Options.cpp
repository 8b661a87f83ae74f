// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Options.h"

#include <QCommandLineParser>
#include <QHash>

namespace {

constexpr int maxMilliseconds = 24 * 60 * 60 * 1000;
constexpr int maxHours = 366 * 24;
constexpr int maxPort = 65535;

/// Reads a number option into \a target; false, with \a message set, if it is no number or out of range.
bool readNumber(const QCommandLineParser &parser, const QString &name, double minimum, double maximum, double &target,
                QString &message)
{
    if (!parser.isSet(name)) {
        return true;
    }
    bool isNumber = false;
    const double value = parser.value(name).toDouble(&isNumber);
    if (!isNumber || value < minimum || value > maximum) {
        message = QStringLiteral("--%1: not a number from %2 to %3: %4")
                      .arg(name)
                      .arg(minimum, 0, 'f', 0)
                      .arg(maximum, 0, 'f', 0)
                      .arg(parser.value(name));
        return false;
    }
    target = value;
    return true;
}

/// Reads what belongs to --passes-csv; nothing, with \a message set, if something in it cannot be.
std::optional<PassTableOptions> readPassTable(const QCommandLineParser &parser, QString &message)
{
    PassTableOptions table;
    table.from = QDateTime::currentDateTimeUtc();
    if (parser.isSet(QStringLiteral("from"))) {
        table.from = QDateTime::fromString(parser.value(QStringLiteral("from")), Qt::ISODate);
        if (table.from.timeSpec() == Qt::LocalTime) {
            table.from.setTimeSpec(Qt::UTC); // a date that names no zone
        }
        table.from = table.from.toUTC();
        if (!table.from.isValid()) {
            message =
                QStringLiteral("--from: no date such as 2026-03-20T12:00:00Z: ") + parser.value(QStringLiteral("from"));
            return std::nullopt;
        }
    }
    double hours = table.hours;
    if (!readNumber(parser, QStringLiteral("hours"), 1, maxHours, hours, message)) {
        return std::nullopt;
    }
    table.hours = int(hours);
    const QString separator = parser.value(QStringLiteral("separator"));
    if (separator != QLatin1String(",") && separator != QLatin1String(";")) {
        message = QStringLiteral("--separator must be , or ;");
        return std::nullopt;
    }
    table.separator = separator.front();
    return table;
}

} // namespace

SimOptionsResult readOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("The device on the other end of the wire: a board that answers AT requests on a pseudo "
                       "terminal, whose path is the first line printed. A line console on standard input plays the "
                       "world around it; \"help\" lists its commands, and the end of the input leaves the device "
                       "running."));
    parser.addOptions({
        {QStringLiteral("help"), QStringLiteral("Print this and end.")},
        {QStringLiteral("board"), QStringLiteral("The board: zep1, zep2, tbx or ranger."), QStringLiteral("BOARD")},
        {QStringLiteral("link"), QStringLiteral("Keep a symbolic link to the port here, and remove it at the end."),
         QStringLiteral("PATH")},
        {QStringLiteral("seed"), QStringLiteral("Decides identity and made-up numbers; 1 by default."),
         QStringLiteral("N")},
        {QStringLiteral("airtime"), QStringLiteral("Length of one transmission in ms; 1500 by default."),
         QStringLiteral("MS")},
        {QStringLiteral("latency"), QStringLiteral("Delay of every answer in ms; 0 by default."), QStringLiteral("MS")},
        {QStringLiteral("baud-pace"), QStringLiteral("Space the bytes as 9600 baud would.")},
        {QStringLiteral("auto-wake"),
         QStringLiteral("Push the ranger's wake-up button so many seconds after a client has opened the port."),
         QStringLiteral("SECONDS")},
        {QStringLiteral("awake-for"),
         QStringLiteral("Seconds without a request after which the ranger falls asleep again; 600 by default."),
         QStringLiteral("SECONDS")},
        {QStringLiteral("trace"), QStringLiteral("Write every line with its direction and time in ms to this file."),
         QStringLiteral("PATH")},
        {QStringLiteral("console"),
         QStringLiteral("Local socket on which the console is reachable too. Default: the path of --link with "
                        "\".console\" appended; without --link there is no socket."),
         QStringLiteral("PATH")},
        {QStringLiteral("bulletins"),
         QStringLiteral("Serve the bulletins by HTTP on this port of the loopback, 0 for any that is free. The address "
                        "is the second line printed."),
         QStringLiteral("PORT")},
        {QStringLiteral("passes-csv"), QStringLiteral("Print the table of the passes at the factory's position and "
                                                      "end; needs no --board.")},
        {QStringLiteral("from"), QStringLiteral("Start of the table, as 2026-03-20T12:00:00Z; now by default."),
         QStringLiteral("DATE")},
        {QStringLiteral("hours"), QStringLiteral("Length of the table; 24 by default."), QStringLiteral("N")},
        {QStringLiteral("separator"), QStringLiteral("Between the fields of the table, \",\" by default or \";\"."),
         QStringLiteral("CHARACTER"), QStringLiteral(",")},
    });
    if (!parser.parse(arguments)) {
        return {std::nullopt, parser.errorText(), 2};
    }
    if (parser.isSet(QStringLiteral("help"))) {
        return {std::nullopt, parser.helpText(), 0};
    }
    const bool isPassTable = parser.isSet(QStringLiteral("passes-csv"));
    for (const QString &name : {QStringLiteral("from"), QStringLiteral("hours"), QStringLiteral("separator")}) {
        if (parser.isSet(name) && !isPassTable) {
            return {std::nullopt, QStringLiteral("--%1 goes with --passes-csv").arg(name), 2};
        }
    }
    static const QHash<QString, Board> boardWords{{QStringLiteral("zep1"), Board::Zep1},
                                                  {QStringLiteral("zep2"), Board::Zep2},
                                                  {QStringLiteral("tbx"), Board::Tbx},
                                                  {QStringLiteral("ranger"), Board::Ranger}};
    const auto board = boardWords.constFind(parser.value(QStringLiteral("board")));
    if ((board == boardWords.cend() && !isPassTable) || !parser.positionalArguments().isEmpty()) {
        return {std::nullopt, QStringLiteral("--board must be zep1, zep2, tbx or ranger; --help tells the rest"), 2};
    }
    SimOptions options;
    options.board = board == boardWords.cend() ? options.board : *board;
    double seed = options.seed;
    double airtime = options.airtimeMs;
    double latency = options.latencyMs;
    double wakeSeconds = 0;
    double awakeSeconds = options.awakeMs / 1000.0;
    double bulletinPort = 0;
    QString message;
    if (!readNumber(parser, QStringLiteral("seed"), 0, 4294967295.0, seed, message) ||
        !readNumber(parser, QStringLiteral("airtime"), 0, maxMilliseconds, airtime, message) ||
        !readNumber(parser, QStringLiteral("latency"), 0, maxMilliseconds, latency, message) ||
        !readNumber(parser, QStringLiteral("auto-wake"), 0, maxMilliseconds / 1000.0, wakeSeconds, message) ||
        !readNumber(parser, QStringLiteral("awake-for"), 0.001, maxMilliseconds / 1000.0, awakeSeconds, message) ||
        !readNumber(parser, QStringLiteral("bulletins"), 0, maxPort, bulletinPort, message)) {
        return {std::nullopt, message, 2};
    }
    if (isPassTable) {
        options.passTable = readPassTable(parser, message);
        if (!options.passTable) {
            return {std::nullopt, message, 2};
        }
    }
    if (parser.isSet(QStringLiteral("bulletins"))) {
        options.bulletinPort = quint16(bulletinPort);
    }
    options.seed = quint32(seed);
    options.airtimeMs = int(airtime);
    options.latencyMs = int(latency);
    options.awakeMs = int(awakeSeconds * 1000);
    if (parser.isSet(QStringLiteral("auto-wake"))) {
        options.autoWakeMs = int(wakeSeconds * 1000);
    }
    options.baudPace = parser.isSet(QStringLiteral("baud-pace"));
    options.link = parser.value(QStringLiteral("link"));
    options.traceFile = parser.value(QStringLiteral("trace"));
    options.consoleSocket = parser.value(QStringLiteral("console"));
    if (options.consoleSocket.isEmpty() && !options.link.isEmpty()) {
        options.consoleSocket = options.link + QStringLiteral(".console");
    }
    return {options, QString(), 0};
}
