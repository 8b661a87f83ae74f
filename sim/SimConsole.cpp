// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SimConsole.h"

#include "BulletinDocument.h"
#include "SimDevice.h"
#include "Simulator.h"

#include <QMap>

#include <algorithm>

namespace {

constexpr int maxCount = 1'000'000;
constexpr int maxMs = 24 * 60 * 60 * 1000;

using Run = std::function<QString(const QString &)>;

/// A command that takes nothing and cannot fail.
Run plain(const std::function<void()> &action)
{
    return [action](const QString &argument) {
        if (!argument.isEmpty()) {
            return QStringLiteral("takes nothing behind it");
        }
        action();
        return QString();
    };
}

Run number(int minimum, int maximum, const std::function<void(int)> &action)
{
    return [minimum, maximum, action](const QString &argument) {
        bool isNumber = false;
        const int value = argument.toInt(&isNumber);
        if (!isNumber || value < minimum || value > maximum) {
            return QStringLiteral("needs a number from %1 to %2").arg(minimum).arg(maximum);
        }
        action(value);
        return QString();
    };
}

QString setPass(SimDevice &device, const QString &argument)
{
    const QStringList words = argument.split(u' ', Qt::SkipEmptyParts);
    int length = 120;
    const auto take = [&length](int seconds) { length = seconds; };
    QString reason = words.size() > 2 ? QStringLiteral("takes two numbers") : QString();
    if (reason.isEmpty() && words.size() == 2) {
        reason = number(1, maxMs / 1000, take)(words.at(1));
    }
    if (reason.isEmpty()) {
        const auto set = [&device, &length](int seconds) { device.prediction().setPass(seconds, length); };
        reason = number(0, maxMs / 1000, set)(words.value(0));
    }
    return reason;
}

const QMap<QString, BulletinMode> &bulletinModes()
{
    static const QMap<QString, BulletinMode> modes{{"ok", BulletinMode::Ok},
                                                   {"500", BulletinMode::Status500},
                                                   {"empty", BulletinMode::Empty},
                                                   {"broken", BulletinMode::Broken},
                                                   {"errors", BulletinMode::Errors},
                                                   {"unknown-status", BulletinMode::UnknownStatus},
                                                   {"no-ident", BulletinMode::NoIdent},
                                                   {"silent", BulletinMode::Silent}};
    return modes;
}

QString setBulletins(Simulator &simulator, const QString &word)
{
    const auto mode = bulletinModes().constFind(word);
    if (mode == bulletinModes().cend()) {
        return QStringLiteral("no such mode");
    }
    return simulator.setBulletinMode(*mode) ? QString() : QStringLiteral("start with --bulletins for this");
}

Run hex(const std::function<void(QString)> &action)
{
    return [action](const QString &argument) {
        if (Field{Field::Kind::Hex}.check(argument) != ErrorCode::None) {
            return QStringLiteral("needs hexadecimal digits");
        }
        action(argument);
        return QString();
    };
}

Run sleeper(Simulator &simulator, const Run &action)
{
    return [&simulator, action](const QString &argument) {
        return simulator.device().canSleep() ? action(argument) : QStringLiteral("this board never sleeps");
    };
}

} // namespace

SimConsole::SimConsole(Simulator &simulator)
{
    SimDevice &device = simulator.device();
    const auto text = [](const std::function<void(QString)> &action) {
        return [action](const QString &argument) {
            action(argument);
            return QString();
        };
    };
    // clang-format off
    m_rows = {
        // word, help, action
        {"wake", ": the ranger's button is pushed", sleeper(simulator, plain([&device] { device.wakeUp(); }))},
        {"sleep", ": the ranger falls asleep", sleeper(simulator, plain([&device] { device.fallAsleep(); }))},
        {"sleep-in-the-middle", " N: the ranger falls asleep behind its answer to the N th setting from now",
         sleeper(simulator, number(1, maxCount, [&device](int count) { device.fallAsleepAfter(count); }))},
        {"lose-restart", ": the ranger never reports that its next restart has restored its parameters",
         sleeper(simulator, plain([&device] { device.loseRestart(); }))},
        {"refuse", " WORD: requests of this command are answered by an error from now on, or no longer so",
         [&device](const QString &commandWord) {
             return device.toggleRefused(commandWord) ? QString() : QStringLiteral("no such command on this board");
         }},
        {"rx", " HEX: a message from a satellite comes in",
         hex([&simulator](const QString &data) { simulator.speak(QStringLiteral("+RX=") + data); })},
        {"rx-after", " HEX: as rx, behind the result of the next good message with an attribute",
         hex([&device](const QString &data) { device.transmitter().queueReply(data); })},
        {"bc", " HEX: a broadcast message comes in",
         hex([&simulator](const QString &data) { simulator.speak(QStringLiteral("+BC=") + data); })},
        {"pass", " SECONDS [LENGTH]: a pass of so many seconds, 120 by default, starts so many from now, orbits or not",
         [&device](const QString &argument) { return setPass(device, argument); }},
        {"skip-pass", ": the device sends nothing in the next pass that begins",
         plain([&device] { device.transmitter().skipPass(); })},
        {"blacklist", " ID: the device marks a satellite as blacklisted and uses it no more, or again",
         [&device](const QString &ident) {
             return device.prediction().toggleBlacklisted(ident) ? QString() : QStringLiteral("no such satellite");
         }},
        {"forget-bulletins", ": the device has no bulletin left",
         plain([&device] { device.prediction().forgetBulletins(); })},
        {"bulletins", " MODE: how the web service answers from now on: " + bulletinModes().keys().join(", "),
         [&simulator](const QString &word) { return setBulletins(simulator, word); }},
        {"tx-error", " N: the next Tx result has status N",
         number(-255, 255, [&device](int status) { device.transmitter().setNextStatus(status); })},
        {"error", " N: the next request is answered by ERROR N",
         number(0, 255, [&simulator](int code) { simulator.setNextError(code); })},
        {"mute", " N: the next N requests are not heard",
         number(0, maxCount, [&simulator](int count) { simulator.setMute(count); })},
        {"late", " MS: the next answer comes so much later",
         number(0, maxMs, [&simulator](int ms) { simulator.setNextLate(ms); })},
        {"split", ": the next answer leaves in two writes, 50 ms apart", plain([&simulator] { simulator.setNextSplit(); })},
        {"when", " REQUEST LINE: this console line, once, when the next request that begins so comes in, before it is heard",
         [this, &simulator](const QString &order) {
             const QString line = order.section(u' ', 1).trimmed();
             if (line.isEmpty() || !row(line)) {
                 return QStringLiteral("needs the beginning of a request and a console line");
             }
             simulator.addOrder(order.section(u' ', 0, 0), line);
             return QString();
         }},
        {"say", " TEXT: this line, whatever it is", text([&simulator](const QString &words) { simulator.speak(words); })},
        {"garbage", " BYTES: so many bytes that are no UTF-8, and a line end",
         number(1, maxCount, [&simulator](int count) { simulator.sendGarbage(count); })},
        {"assert", " TEXT: the device fails an assertion and restarts",
         text([&device](const QString &words) { device.failAssertion(words); })},
        {"firmware", " TEXT: the firmware version told from now on",
         text([&device](const QString &version) { device.setFirmware(version); })},
        {"unplug", ": the cable is pulled", [&simulator](const QString &) {
             if (!simulator.isPlugged()) {
                 return QStringLiteral("not plugged in");
             }
             simulator.unplug();
             return QString();
         }},
        {"plug", ": the cable is put back, on a new port", [&simulator](const QString &) {
             if (simulator.isPlugged()) {
                 return QStringLiteral("plugged in already");
             }
             return simulator.plug() ? QString() : simulator.errorString();
         }},
        {"help", ": this list", [](const QString &) { return QString(); }},
        {"quit", ": the simulator ends", plain([&simulator] { Q_EMIT simulator.quitRequested(); })},
    };
    // clang-format on
}

QString SimConsole::execute(const QString &line)
{
    const QString trimmed = line.trimmed();
    const QString word = trimmed.section(u' ', 0, 0);
    const Row *command = row(trimmed);
    if (!command) {
        return QStringLiteral("error: unknown command \"%1\", try help").arg(word);
    }
    const QString reason = command->run(trimmed.mid(word.size()).trimmed());
    if (!reason.isEmpty()) {
        return QStringLiteral("error: %1: %2").arg(word, reason);
    }
    return (word == QLatin1String("help") ? help() : QString()) + QStringLiteral("ok");
}

const SimConsole::Row *SimConsole::row(const QString &line) const
{
    const QString word = line.section(u' ', 0, 0);
    const auto found = std::find_if(m_rows.cbegin(), m_rows.cend(), [&word](const Row &r) { return r.word == word; });
    return found == m_rows.cend() ? nullptr : &*found;
}

QString SimConsole::help() const
{
    QString lines;
    for (const Row &row : m_rows) {
        lines += row.word + row.help + u'\n';
    }
    return lines;
}
