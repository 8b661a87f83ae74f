// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzTarget.h"

#include <cstdio>

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMetaProperty>
#include <QSerialPortInfo>
#include <QSettings>
#include <QTemporaryDir>

#include "Identity.h"
#include "TxManager.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::minutes minute{1};
const QDateTime dateOfEveryInput(QDate(2026, 1, 7), QTime(10, 0), Qt::UTC);

VirtualTime *virtualTime = nullptr;

void onMessage(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(message)); // the rest would only take time
    }
}

void prepareProcess()
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    qputenv("TZ", "UTC");
    virtualTime = VirtualTime::install();
    static const QCoreApplication application(argc, argv);
    static const QTemporaryDir folder(QDir(u"/dev/shm"_s).exists() ? u"/dev/shm/fuzz-XXXXXX"_s : u"fuzz-XXXXXX"_s);
    qInstallMessageHandler(onMessage);
    QCoreApplication::setOrganizationName(Identity::organization);
    QCoreApplication::setApplicationName(Identity::name);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit()); // for an input that enables the journal
    Fuzz::require(QDir::setCurrent(folder.path()) && QDir().mkpath(Identity::organization), "no folder to work in");
}

void prepareInput()
{
    Fuzz::write(Fuzz::settingsFile(), {});
    Fuzz::write(u"config.ini"_s, "[Prepass]\naopWebRequestUrl=\n[Journal]\nenabled=false\n");
}

} // namespace

void Fuzz::require(bool condition, const char *what)
{
    if (!condition) {
        qFatal("%s", what);
    }
}

QString Fuzz::settingsFile()
{
    return u"%1/%2.conf"_s.arg(Identity::organization, Identity::name);
}

void Fuzz::write(const QString &name, const QByteArray &content)
{
    static qint64 writings = 0;
    QFile file(name);
    // A store reads a file again when its size or its time is another.
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() &&
                file.setFileTime(QDateTime::fromSecsSinceEpoch(++writings), QFileDevice::FileModificationTime),
            "a file cannot be written");
}

void Fuzz::readAll(const QObject *object)
{
    const QMetaObject *meta = object->metaObject();
    for (int index = QObject::staticMetaObject.propertyCount(); index < meta->propertyCount(); ++index) {
        const QVariant value = meta->property(index).read(object);
        if (const auto *next = value.value<QObject *>()) {
            readAll(next);
        }
    }
    if (const auto *model = qobject_cast<const QAbstractItemModel *>(object); model && model->rowCount() > 0) {
        const QList<int> roles = model->roleNames().keys();
        for (int row = 0; row < model->rowCount(); ++row) {
            for (const int role : roles) {
                model->index(row, 0).data(role);
            }
        }
    }
}

VirtualTime &Fuzz::time()
{
    return *virtualTime;
}

void Fuzz::Bench::run(int minutes)
{
    for (int passed = 0; passed < minutes; ++passed) {
        QCoreApplication::processEvents();
        time().sleep(minute); // cheaper than a minute of timers
        QCoreApplication::processEvents();
    }
    readAll(&tx);
}

// Replaces the library's: the ports of this machine are no input, and finding them takes longer than all else.
QList<QSerialPortInfo> QSerialPortInfo::availablePorts()
{
    return {};
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    prepareProcess();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    prepareInput();
    virtualTime->setDate(dateOfEveryInput);
    fuzzOne(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
