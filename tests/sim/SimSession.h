// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "SimDevice.h"
#include "Simulator.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <fcntl.h>
#include <memory>
#include <unistd.h>
#include <utility>

#pragma GCC diagnostic ignored "-Wmissing-field-initializers" // the options left out have defaults

constexpr int airtimeMs = 200;

/// What has a port open: bare reads and writes, nothing of the program's own serial code.
class SimClient
{
public:
    explicit SimClient(const QString &path)
        : m_descriptor(::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK))
        , m_notifier(m_descriptor, QSocketNotifier::Read)
    {
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { read(); });
        m_clock.start();
    }
    ~SimClient()
    {
        m_notifier.setEnabled(false);
        ::close(m_descriptor);
    }
    void send(const QByteArray &text)
    {
        m_clock.restart();
        QCOMPARE(::write(m_descriptor, text.constData(), size_t(text.size())), ssize_t(text.size()));
    }
    /// All that has come since the last call, once it is so many lines; a bar stands for each line end but the last.
    QByteArray hear(qsizetype lines)
    {
        (void)QTest::qWaitFor([&] { return bytes.count('\n') >= lines; });
        QByteArray heard = std::exchange(bytes, {}).replace("\r\n", "|");
        heard.chop(heard.endsWith('|') ? 1 : 0);
        return heard;
    }
    /// What comes on requests, which are separated by bars.
    QByteArray ask(QByteArray requests, qsizetype lines = 1)
    {
        send(requests.replace("|", "\r\n") + "\r\n");
        return hear(lines);
    }

    QByteArray bytes;      ///< all that came and was not heard
    int reads = 0;         ///< the pieces in which it came
    qint64 lastReadMs = 0; ///< from the last send to the last piece
    bool hungUp = false;

private:
    void read()
    {
        std::array<char, 4096> buffer;
        const ssize_t count = ::read(m_descriptor, buffer.data(), buffer.size());
        if (count <= 0) {
            hungUp = true;
            m_notifier.setEnabled(false);
            return;
        }
        bytes.append(buffer.data(), count);
        ++reads;
        lastReadMs = m_clock.elapsed();
    }

    int m_descriptor;
    QSocketNotifier m_notifier;
    QElapsedTimer m_clock;
};

/// A running simulator with a client at its port's link.
class SimSession
{
public:
    explicit SimSession(SimOptions options = {.airtimeMs = airtimeMs})
    {
        options.link = link;
        // cppcheck-suppress useInitializationList ; the link is set before
        simulator = std::make_unique<Simulator>(options);
        QVERIFY2(simulator->start(), qPrintable(simulator->errorString()));
        open();
    }
    void open() { client = std::make_unique<SimClient>(link); }
    /// "ok" if all the console's lines, separated by bars, are answered so; else the first other answer.
    QByteArray tell(const QString &lines) const
    {
        for (const QString &line : lines.split(u'|', Qt::SkipEmptyParts)) {
            if (const QString answer = simulator->execute(line); answer != QLatin1String("ok")) {
                return answer.toUtf8();
            }
        }
        return "ok";
    }

    const QTemporaryDir folder;
    const QString link = folder.filePath("port");
    std::unique_ptr<Simulator> simulator;
    std::unique_ptr<SimClient> client;
};
