// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QStringListModel>
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

/// Fails the test unless \a model, which is called \a name in what \a source asserts, refuses to write outside of its
/// rows, and aborts the program when it is read there or in a role that it does not know.
template <typename Model> void verifyBounds(Model &model, const QByteArray &source, const QByteArray &name)
{
    const QStringListModel longer(QStringList(model.rowCount() + 1)); // the model gives no index past its own end
    const QByteArray access = " to access " + name + " model data";
    for (const QModelIndex &outside : {QModelIndex(), longer.index(model.rowCount())}) {
        QVERIFY(!model.setData(outside, true, Qt::UserRole + 1));
        verifyAborts(outside.isValid() ? "row behind" : "row before", source, "Invalid index" + access,
                     [&] { (void)model.data(outside, Qt::UserRole + 1); });
    }
    verifyAborts("role", source, "Invalid role value" + access, [&] { (void)model.data(model.index(0), 264); });
}
