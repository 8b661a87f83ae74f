// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

/// Fails the test unless \a what aborts the program with the assertion \a text of \a source. It runs in a child, which
/// is this executable on the present test function; \a name tells the child which of the function's cases is meant.
template <typename What>
void verifyAborts(const QString &name, const QByteArray &source, const QByteArray &text, What what)
{
    if (const QString wanted = qEnvironmentVariable("ZEPGUI_ABORTS"); !wanted.isEmpty()) {
        if (wanted == name) {
            what();
        }
        return;
    }
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ZEPGUI_ABORTS", name);
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {"-nocrashhandler", QTest::currentTestFunction()});
    QVERIFY2(child.waitForFinished() && child.exitStatus() == QProcess::CrashExit, qPrintable(name));
    const QByteArray printed = child.readAll();
    QVERIFY2(printed.contains(" in " + source + ": ") && printed.contains("&& \"" + text + '"'), printed);
}
