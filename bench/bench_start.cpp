// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Prints the milliseconds from the start of the process to the first frame on the screen, and the resident memory in
// KiB after it. The start comes from the caller, as nanoseconds of the monotonic clock: the loader counts too.

#ifndef EMPTY_WINDOW
#include "Identity.h"
#include "QmlTypes.h"
#endif
#include "ResidentMemory.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickWindow>
#include <QTimer>

#include <cstdio>
#include <ctime>
#include <unistd.h>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    const qint64 start = argc > 1 ? QByteArray(argv[1]).toLongLong() : 0;
    QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
#ifdef EMPTY_WINDOW
    engine.load(QUrl(u"qrc:/empty.qml"_s));
#else
    QGuiApplication::setApplicationName(u"ZepGUI bench"_s);
    QGuiApplication::setOrganizationName(Identity::organization);
    registerQmlTypes();
    engine.rootContext()->setContextProperty(u"QT_VERSION"_s, QString::fromLatin1(qVersion()));
    engine.load(QUrl(u"qrc:/qml/main.qml"_s));
#endif
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (!window) {
        return 1;
    }
    QObject::connect(
        window, &QQuickWindow::frameSwapped, &application,
        [start] {
            timespec now{};
            clock_gettime(CLOCK_MONOTONIC, &now);
            const qint64 elapsed = now.tv_sec * 1'000'000'000LL + now.tv_nsec - start;
            std::printf("%.1f %lld\n", double(elapsed) / 1e6, static_cast<long long>(residentKib()));
            std::fflush(stdout);
            _exit(0);
        },
        Qt::QueuedConnection);
    return QGuiApplication::exec();
}
