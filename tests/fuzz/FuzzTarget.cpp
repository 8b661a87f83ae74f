// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzTarget.h"

#include <cstdio>
#include <utility>

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QMetaProperty>
#include <QSerialPortInfo>
#include <QSettings>
#include <QTemporaryDir>

#include "Identity.h"
#include "TxManager.h"
#include "VirtualClock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 minute = 60000; // ms

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
    qputenv("QT_NO_GLIB", "1");
    qputenv("TZ", "UTC");
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

Fuzz::Pump::Pump(std::function<void()> onTurn) : m_onTurn(std::move(onTurn))
{
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

bool Fuzz::Pump::event(QEvent *event)
{
    if (event->type() != QEvent::User) {
        return QObject::event(event);
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User)); // first, for the turns inside the call
    m_onTurn();
    return true;
}

void Fuzz::Bench::run(int minutes)
{
    const auto answer = [this] { tx.onTxDone(sent); };
    int turns = 0;
    const Pump pump([&] {
        if (turns++ > 0) { // the sequence itself spins the event loop, for the last answer
            answer();
            VirtualClock::advance(1);
        }
    });
    const auto work = [&turns] {
        turns = 0;
        QCoreApplication::processEvents();
    };
    for (int passed = 0; passed < minutes; ++passed) {
        work();
        if (tx.ackPending()) { // in time: an answer that is out when the next Tx is due ends the program
            answer();
        }
        VirtualClock::advance(minute);
        work();
    }
    readAll(&tx);
}

// These two stand before those of the libraries. What is written here need not outlive the machine.
extern "C" int fdatasync(int)
{
    return 0;
}

// The ports of this machine are no input, and take longer to find than all else.
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
    VirtualClock::begin();
    fuzzOne(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    VirtualClock::end();
    return 0;
}
