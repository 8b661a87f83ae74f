// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PortHelp.h"
#include "PortWatcher.h"
#include "PseudoTerminal.h"
#include "SerialPortManager.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSerialPortInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <ctime>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
QStringList criticals; // what the process log got in this test
QtMessageHandler testHandler = nullptr;

void recordCriticals(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtCriticalMsg) {
        criticals.append(message);
    } else {
        testHandler(type, context, message);
    }
}
} // namespace

class TestSerialPortManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        criticals.clear();
        m_lines.clear();
        testHandler = qInstallMessageHandler(recordCriticals);
        m_manager = new SerialPortManager(this);
        connect(m_manager, &SerialPortManager::doneReading, this,
                [this](const QString &line) { m_lines.append(line); });
        m_manager->configure({115200});
        QVERIFY2(m_terminal.open(), qPrintable(m_terminal.errorString()));
        QVERIFY(m_manager->open(m_terminal.path()));
    }

    void cleanup()
    {
        delete m_manager;
        m_terminal.close();
        qInstallMessageHandler(testHandler);
    }

    void anErrorOfAPulledAdapterIsALostLine()
    {
        using Error = QSerialPort::SerialPortError;
        const auto report = [this](Error error) {
            QMetaObject::invokeMethod(m_manager, "onSerialPortError", Q_ARG(QSerialPort::SerialPortError, error));
        };
        QList<ListedPort> listed{{m_terminal.path(), {}, 0, 0}};
        m_manager->close();
        m_manager->setSystemPorts([&listed] { return listed; });
        for (const auto &[isPulled, error, isLost] : {std::tuple(false, Error::UnknownError, false),
                                                      {true, Error::TimeoutError, false},
                                                      {true, Error::UnknownError, true}}) {
            listed = {{m_terminal.path(), {}, 0, 0}};
            m_manager->enumerate();
            QVERIFY(m_manager->open(m_terminal.path()));
            QSignalSpy failed(m_manager, &SerialPortManager::serialError);
            if (isPulled) {
                listed.clear();
            }
            report(error);
            QCOMPARE(failed.wait(50), isLost);
            QCOMPARE(m_manager->isOpen(), !isLost);
            m_manager->close();
        }
    }

    void lastPortIsFoundByItsAdapterWhateverItsName()
    {
        const QTemporaryDir folder;
        QCoreApplication::setOrganizationName(u"o"_s);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        const ListedPort own{u"ttyUSB0"_s, u"FT1"_s, 1, 2};
        const ListedPort moved{u"ttyUSB1"_s, u"FT1"_s, 1, 2};
        const ListedPort other{u"ttyUSB0"_s, u"FT2"_s, 1, 2};
        const ListedPort plain{u"ttyS0"_s, {}, 0, 0};
        m_manager->close();
        const auto lastAmong = [this](const QList<ListedPort> &ports) {
            m_manager->setSystemPorts([ports] { return ports; });
            return m_manager->lastPort();
        };
        QCOMPARE(lastAmong({plain, own}), QString()); // no session yet
        m_manager->rememberPort(own.name);
        QCOMPARE(lastAmong({plain, own}), own.name);
        QCOMPARE(lastAmong({plain, other, moved}), moved.name);
        QCOMPARE(lastAmong({plain, other}), QString());
        QCOMPARE(lastAmong({moved, own}), own.name); // two adapters of one number
        lastAmong({plain, other});
        m_manager->rememberPort(plain.name);
        QCOMPARE(lastAmong({other, plain}), plain.name);
        m_manager->rememberPort(u"/tmp/zep2"_s); // of config.ini
        QCOMPARE(lastAmong({other}), QString());
        m_manager->ports()->setStringList({u"ttyS0"_s, u"/tmp/zep2"_s});
        QCOMPARE(m_manager->lastPort(), u"/tmp/zep2"_s);
    }

    void listFollowsTheAdaptersWhileNoPortIsOpen()
    {
        const QTemporaryDir nodes;
        PortWatcher watcher(nullptr, nodes.path());
        QSignalSpy changed(&watcher, &PortWatcher::changed);
        for (int node = 0; node < 3; ++node) { // one plug is many changes
            QVERIFY(QFile(nodes.filePath(QString::number(node))).open(QIODevice::WriteOnly));
        }
        QVERIFY(changed.wait(5000));
        QVERIFY(!changed.wait(2 * PortWatcher::settleTime));
        QCOMPARE(changed.count(), 1);

        QList<ListedPort> listed;
        m_manager->setSystemPorts([&listed] { return listed; });
        m_manager->followAdapters();
        listed = {{u"ttyUSB7"_s, {}, 0, 0}};
        QMetaObject::invokeMethod(m_manager->findChild<PortWatcher *>(), "changed");
        QCOMPARE(m_manager->rowOf(u"ttyUSB7"_s), -1); // in a session
        m_manager->close();
        QMetaObject::invokeMethod(m_manager->findChild<PortWatcher *>(), "changed");
        QCOMPARE(m_manager->rowOf(u"ttyUSB7"_s), 0);
    }

    void helpSaysWhatToDo()
    {
        for (const auto &[refusal, word] :
             {std::pair(PortRefusal{PortRefusal::Forbidden, u"dialout"_s, u"ann"_s, {}, 0},
                        u"sudo adduser ann dialout"_s),
              {PortRefusal{PortRefusal::Busy, {}, {}, u"getty"_s, 12}, u"getty (process 12)"_s},
              {PortRefusal{PortRefusal::Busy, {}, {}, u"ModemManager"_s, 0}, u"ModemManager asks"_s},
              {PortRefusal{PortRefusal::Busy, {}, {}, {}, 0}, u"Another program"_s},
              {PortRefusal{PortRefusal::Gone, {}, {}, {}, 0}, u"no such port"_s}}) {
            QVERIFY2(portHelp(refusal).contains(word), qPrintable(portHelp(refusal)));
        }
        QVERIFY(portHelp({}).isEmpty());
    }

    void unopenablePort()
    {
        PseudoTerminal forbidden;
        QVERIFY(forbidden.open() && QFile::setPermissions(forbidden.path(), {}));
        QVERIFY(QFile::setPermissions(m_terminal.path(), {}));
        for (const auto &[name, reason, help] :
             {std::tuple(u"/dev/nowhere"_s, u" No such file or directory"_s, u"no such port"_s),
              {u"null"_s, u" Inappropriate ioctl for device"_s, QString()},
              {m_terminal.path(), u" locking the device Permission denied"_s, u"sudo adduser"_s}, // busy, and another's
              {forbidden.path(), u" Permission denied"_s, u"sudo adduser nobody "_s}}) {
            const bool isRoot = name.startsWith("/dev/pts"_L1) && geteuid() == 0; // may open anything: be somebody else
            SerialPortManager manager;
            QSignalSpy failed(&manager, &SerialPortManager::serialError);
            QVERIFY(!isRoot || setresuid(65534, 65534, 0) == 0);
            const bool opened = manager.open(name);
            QVERIFY(!isRoot || setresuid(0, 0, 0) == 0);
            QVERIFY(!opened);
            QCOMPARE(failed, QList<QVariantList>{{u"Unable to open port "_s + name}});
            QVERIFY2(criticals.last().trimmed().endsWith(reason), qPrintable(criticals.last()));
            QVERIFY2(help.isEmpty() ? manager.openHelp().isEmpty() : manager.openHelp().contains(help),
                     qPrintable(manager.openHelp()));
        }
    }

    void farEndCloses()
    {
        QSignalSpy failed(m_manager, &SerialPortManager::serialError);
        m_manager->write("AT+ID=?\r\n");
        m_terminal.close();
        QVERIFY(failed.wait(1000));
        const std::clock_t before = std::clock();
        QTest::qWait(500); // long enough for a storm to show
        QVERIFY2(std::clock() - before < CLOCKS_PER_SEC / 10, "the processor does not go idle");
        QCOMPARE(failed, QList<QVariantList>{{u"The evaluation kit is not reachable, it may have been unplugged"_s}});
        QVERIFY2(!criticals.isEmpty() && criticals.size() < 5, qPrintable(criticals.join(u'\n')));
        m_manager->write("lost\r\n");
        QVERIFY(criticals.last().startsWith("Failed to write data to port:"_L1));

        // Plugged in again, and lost again, with a handler that tidies up on the spot.
        connect(m_manager, &SerialPortManager::serialError, m_manager, &SerialPortManager::close);
        connect(m_manager, &SerialPortManager::serialError, m_manager, &SerialPortManager::enumerate);
        QVERIFY(m_terminal.open() && m_manager->open(m_terminal.path()));
        m_terminal.write("+OK\r\n");
        QTRY_COMPARE(m_lines, QStringList{u"+OK"_s});
        m_terminal.close();
        QVERIFY(failed.wait(1000));
        QCOMPARE(failed.count(), 2);
    }

    void errorsOfTheSystem()
    {
        QSignalSpy failed(m_manager, &SerialPortManager::serialError);
        for (int time = 0; time < 1000; ++time) { // a line that lives, and complains without end
            QMetaObject::invokeMethod(m_manager, "onSerialPortError",
                                      Q_ARG(QSerialPort::SerialPortError, QSerialPort::ReadError));
        }
        QVERIFY(!criticals.isEmpty() && criticals.size() < 50);
        QVERIFY(!failed.wait(20) && !m_manager->open(m_terminal.path()));
        for (int time = 0; time < 2; ++time) { // one that the system calls lost
            QMetaObject::invokeMethod(m_manager, "onSerialPortError",
                                      Q_ARG(QSerialPort::SerialPortError, QSerialPort::ResourceError));
        }
        QVERIFY(failed.wait(1000) && m_manager->open(m_terminal.path()));
        // One that is closed before it can be told, and opened again.
        QMetaObject::invokeMethod(m_manager, "onSerialPortError",
                                  Q_ARG(QSerialPort::SerialPortError, QSerialPort::ResourceError));
        m_manager->close();
        QVERIFY(m_manager->open(m_terminal.path()) && !failed.wait(20));
        QVERIFY(!m_manager->open(m_terminal.path()));
    }

    void lines_data()
    {
        QTest::addColumn<QByteArrayList>("reads");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("cut over reads") << QByteArrayList{"+I", "D=1", "\r", "\n"} << QStringList{u"+ID=1"_s};
        QTest::newRow("two in one read") << QByteArrayList{"+ID=1\r\n+OK\r\n+F"} << QStringList{u"+ID=1"_s, u"+OK"_s};
        QTest::newRow("end and start in one read")
            << QByteArrayList{"+I", "D\n\n+O", "K\n"} << QStringList{u"+ID"_s, QString(), u"+OK"_s};
        QTest::newRow("blanks") << QByteArrayList{" \t \r\n"} << QStringList{QString()};
        QTest::newRow("not UTF-8") << QByteArrayList{"+FW=\xff\xc3\x28\r\n"} << QStringList{u"+FW=\ufffd\ufffd("_s};
        QTest::newRow("UTF-8 cut over reads") << QByteArrayList{"\xc3", "\xa9\n"} << QStringList{u"\u00e9"_s};
        QTest::newRow("NUL") << QByteArrayList{QByteArray("\0+O\0K\r\n", 7)} << QStringList{QString(u"\0+O\0K"_s)};
    }

    void lines()
    {
        QFETCH(QByteArrayList, reads);
        QFETCH(QStringList, expected);
        for (const QByteArray &read : reads) {
            QVERIFY(m_lines.size() < expected.size()); // no line before its end
            m_terminal.write(read);
            QTest::qWait(20);
        }
        QTRY_COMPARE(m_lines, expected);
        QVERIFY(criticals.isEmpty());
    }

    void lineWithoutEnd()
    {
        m_terminal.write(QByteArray(1 << 20, 'A'));
        QTRY_COMPARE(m_terminal.bytesToWrite(), 0);
        QTest::qWait(20);
        QVERIFY(m_lines.isEmpty());
        m_terminal.write("\r\n+OK\r\n");
        QTRY_COMPARE(m_lines.size(), 2);
        QCOMPARE(m_lines.at(0), QString(1 << 20, u'A'));
        QCOMPARE(m_lines.at(1), u"+OK"_s);
    }

    void staleBytesAreDropped()
    {
        QSignalSpy failed(m_manager, &SerialPortManager::serialError);
        QVERIFY(!m_manager->open(m_terminal.path())); // open already: no, without a word
        QVERIFY(failed.isEmpty() && criticals.isEmpty());
        m_terminal.write("+half a li"); // the rest of a line must not join it in the next session
        QTest::qWait(20);
        m_manager->close();
        m_terminal.write("ne\r\n+OLD\r\n");
        QFile line(m_terminal.path());
        QVERIFY(line.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        int waiting = 0;
        QTRY_VERIFY(ioctl(line.handle(), FIONREAD, &waiting) == 0 && waiting == 10);
        QVERIFY(m_manager->open(m_terminal.path()));
        m_terminal.write("+NEW\r\n");
        QTRY_COMPARE(m_lines, QStringList{u"+NEW"_s});
        QSignalSpy received(&m_terminal, &PseudoTerminal::received);
        m_manager->write("AT+ID=?\r\n");
        QVERIFY(received.wait());
        QCOMPARE(received.at(0).at(0).toByteArray(), "AT+ID=?\r\n");
    }

    void slotMayDoAnything_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::newRow("wait for the answer") << u"one two answer"_s;
        QTest::newRow("close") << u"one"_s;
        QTest::newRow("delete") << u"one"_s;
    }

    void slotMayDoAnything()
    {
        const QByteArray tag = QTest::currentDataTag();
        bool done = false;
        QObject listener; // ends with what it keeps
        connect(m_manager, &SerialPortManager::doneReading, &listener, [&](const QString &line) {
            if (line != "one"_L1) {
                return;
            }
            if (tag == "close") { // the listener ends first; clazy:exclude=lambda-in-connect
                m_manager->close();
            } else if (tag == "delete") {
                delete std::exchange(m_manager, nullptr);
            } else {
                m_terminal.write("answer\r\n");
                QVERIFY(QTest::qWaitFor([this] { return m_lines.contains("answer"_L1); }));
            }
            done = true; // the same; clazy:exclude=lambda-in-connect
        });
        m_terminal.write("one\r\ntwo\r\n");
        QTRY_VERIFY(done);
        QTest::qWait(20);
        QTEST(m_lines.join(u' '), "lines");
    }

    void extraPorts()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir::setCurrent(folder.path()));
        m_manager->enumerate(); // without a file
        const QStringList system = m_manager->ports()->stringList();
        QCOMPARE(system.size(), QSerialPortInfo::availablePorts().size());
        const QMap<QByteArray, QStringList> configs{
            {"[rconf]\ndir=x\n", {}},
            {"[Serial]\nextraPorts=/dev/pts/99\n", {u"/dev/pts/99"_s}},
            {"[Serial]\nextraPorts=ttyZ, , \"\", /tmp/a\n", {u"ttyZ"_s, u"/tmp/a"_s}},
        };
        QSignalSpy changed(m_manager, &SerialPortManager::portListModelChanged);
        for (auto config = configs.cbegin(); config != configs.cend(); ++config) {
            QFile file(u"config.ini"_s);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(config.key()) == config.key().size());
            file.close();
            m_manager->enumerate();
            QCOMPARE(m_manager->ports()->stringList(), system + config.value());
        }
        QCOMPARE(changed.count(), configs.size());
    }

private:
    PseudoTerminal m_terminal;
    SerialPortManager *m_manager = nullptr;
    QStringList m_lines;
};

QTEST_GUILESS_MAIN(TestSerialPortManager)
#include "tst_serialportmanager.moc"
