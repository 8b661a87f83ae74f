// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QGenericPlugin>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlExpression>
#include <QSocketNotifier>
#include <QWindow>

#include <cstdio>
#include <string>
#include <unistd.h>

/// A hand inside the real program, which loads it because its environment says so. A line of the standard input is an
/// expression in the main window; its value is answered as a line. The program ends with its test.
class Hand : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "hand.json")

public:
    QObject *create(const QString & /*name*/, const QString & /*specification*/) override
    {
        auto *input = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read);
        connect(input, &QSocketNotifier::activated, input, [] {
            std::string line;
            for (char byte = 0; byte != '\n'; line += byte) {
                if (::read(STDIN_FILENO, &byte, 1) != 1) {
                    ::_exit(1);
                }
            }
            QWindow *window = QGuiApplication::topLevelWindows().value(0);
            QQmlExpression expression(qmlContext(window), window, QString::fromStdString(line));
            const QVariant value = expression.evaluate();
            std::puts(qPrintable(expression.hasError() ? expression.error().toString() : value.toString()));
            std::fflush(stdout);
        });
        return input;
    }
};

#include "Hand.moc"
