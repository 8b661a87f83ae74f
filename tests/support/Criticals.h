// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QRegularExpression>
#include <QTest>

namespace Criticals {
inline QtMessageHandler next = nullptr;
inline bool wireMayComplain = false;
} // namespace Criticals

/// From now on a critical message or a warning that the test has not announced fails it. QTest looks at warnings only,
/// so a critical message is passed on as one.
inline void failOnCritical()
{
    const QtMessageHandler handler = [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
        const bool mayPass = Criticals::wireMayComplain && qstrcmp(context.category, "zepgui.wire") == 0;
        Criticals::next(type == QtCriticalMsg && !mayPass ? QtWarningMsg : type, context, message);
    };
    Criticals::wireMayComplain = false;
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    if (const QtMessageHandler before = qInstallMessageHandler(handler); before != handler) {
        Criticals::next = before;
    }
}

/// Announces a critical message or a warning, by its text or a pattern.
template <typename Text> void expectCritical(const Text &text)
{
    QTest::ignoreMessage(QtWarningMsg, text);
}

/// Lets pass what is said of the wire until the next failOnCritical(): how often a lost line complains is a matter of
/// luck.
inline void allowComplaintsOfTheWire()
{
    Criticals::wireMayComplain = true;
}
