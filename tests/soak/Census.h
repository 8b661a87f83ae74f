// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QMetaMethod>

#include <malloc.h>
#include <mutex>
#include <set>
#include <unistd.h>

extern "C" Q_DECL_IMPORT quintptr qtHookData[]; // Qt's hooks for tools, whose header is not installed with the others

/// What the process holds, counted by kind and name: "object LogModel", whoever owns it and in whatever thread; "timer
/// QTimer utcTimeRefreshTimer 1000 ms" if it runs; "connection Logger::logCreated(QString)", by sender and signal,
/// bindings included; "file /dev/ptmx".
struct Census : QMap<QByteArray, int>
{
    /// Objects are known from here on: to be called before the first one is made.
    static void begin()
    {
        constexpr int size = 1, added = 3, removed = 4; // places in qtHookData
        if (qtHookData[size] <= removed) {
            qFatal("This Qt has other hooks");
        }
        qtHookData[added] = quintptr(+[](QObject *object) {
            const std::lock_guard lock(s_mutex); // the network and the QML loader have threads of their own
            s_objects.insert(object);
        });
        qtHookData[removed] = quintptr(+[](QObject *object) {
            const std::lock_guard lock(s_mutex);
            s_objects.erase(object);
        });
    }

    static Census now()
    {
        Census census;
        const std::lock_guard lock(s_mutex);
        for (QObject *object : s_objects) {
            const QByteArray name = object->metaObject()->className();
            ++census["object " + name];
            for (const auto &timer : QAbstractEventDispatcher::instance()->registeredTimers(object)) {
                ++census["timer " + name + ' ' + object->objectName().toUtf8() + ' ' +
                         QByteArray::number(timer.interval) + " ms"];
            }
            for (int index = 0; index < object->metaObject()->methodCount(); ++index) {
                const QMetaMethod method = object->metaObject()->method(index);
                if (method.methodType() == QMetaMethod::Signal && (object->*&Sender::isSignalConnected)(method)) {
                    const QByteArray signature = method.methodSignature();
                    census["connection " + name + "::" + signature] +=
                        (object->*&Sender::receivers)(QByteArray::number(QSIGNAL_CODE) + signature);
                }
            }
        }
        const QDir handles(QStringLiteral("/proc/self/fd"));
        for (const QString &handle : handles.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)) {
            // The number of a socket or a pipe means nothing; the handle of the folder itself is gone.
            if (const QString target = QFile::symLinkTarget(handles.filePath(handle)); !target.isEmpty()) {
                ++census["file " + target.section(u'[', 0, 0).toUtf8()];
            }
        }
        return census;
    }

    [[nodiscard]] int total(const char *kind) const
    {
        int sum = 0;
        for (auto count = cbegin(); count != cend(); ++count) {
            sum += count.key().startsWith(kind) ? *count : 0;
        }
        return sum;
    }

    /// What there is more of in \a later, as "+2 object LogModel"; less is what a cache has let go.
    [[nodiscard]] QByteArrayList growthTo(const Census &later, const char *kind = "") const
    {
        QByteArrayList growth;
        for (auto count = later.cbegin(); count != later.cend(); ++count) {
            if (const int more = *count - value(count.key()); more > 0 && count.key().startsWith(kind)) {
                growth << '+' + QByteArray::number(more) + ' ' + count.key();
            }
        }
        return growth;
    }

private:
    struct Sender : QObject
    {
        using QObject::isSignalConnected; // a quick look, which may say yes in vain
        using QObject::receivers;
    };
    static inline std::mutex s_mutex;
    static inline std::set<QObject *> &s_objects = *new std::set<QObject *>; // outlives the last of them
};

/// KiB, once what is free has been given back to the system.
struct Memory
{
    static Memory measure()
    {
        malloc_trim(0);
        const auto heap = mallinfo2();
        QFile file(QStringLiteral("/proc/self/statm"));
        const QByteArray pages = file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1) : QByteArray();
        return {qint64(heap.uordblks + heap.hblkhd) / 1024, pages.toLongLong() * sysconf(_SC_PAGESIZE) / 1024};
    }

    qint64 heap = 0; ///< in use, as the allocator counts it
    qint64 resident = 0;
};
