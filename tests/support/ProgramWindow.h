// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "QmlTypes.h"
#include "ScriptedPeer.h"
#include "ZepManager.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QtQuickTest/quicktest.h>

#include <functional>
#include <memory>

/// The real window on the real ZepManager, its controls found by what they are called and used by mouse; a scripted
/// device stands at the far end of the line and says +OK to everything while \c m_answering. The base of a test.
class ProgramWindow
{
protected:
    /// Settings of the test's own.
    void prepare()
    {
        QGuiApplication::setOrganizationName(QStringLiteral("Sarvane"));
        QGuiApplication::setApplicationName(QStringLiteral("ZepGUI"));
        QVERIFY(m_dir.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_dir.path());
        registerQmlTypes();
    }

    /// A device, settings of somebody who has been here before, and the window.
    void startAnew()
    {
        QSettings().clear();
        QSettings().setValue("firstVisit", false);
        m_answering = true;
        m_peer = std::make_unique<ScriptedPeer>();
        QObject::connect(m_peer.get(), &ScriptedPeer::requested, m_peer.get(), [this] {
            if (m_answering) {
                m_peer->say("+OK");
            }
        });
        start();
    }

    void start()
    {
        m_engine = std::make_unique<QQmlApplicationEngine>();
        m_engine->rootContext()->setContextProperty(QStringLiteral("QT_VERSION"), QString::fromLatin1(qVersion()));
        m_engine->load(QUrl(QStringLiteral("qrc:/qml/main.qml")));
        QVERIFY(!m_engine->rootObjects().isEmpty());
        m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().first());
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
        m_manager = qobject_cast<ZepManager *>(singleton("com.sarvane.qml", "ZepManager"));
        m_manager->serialPort()->ports()->setStringList({m_peer->path()});
    }

    void stop()
    {
        m_engine.reset();
        m_window = nullptr;
    }

    [[nodiscard]] QObject *singleton(const char *module, const char *type) const
    {
        return m_engine->singletonInstance<QObject *>(qmlTypeId(module, 1, 0, type));
    }
    [[nodiscard]] QQuickItem *bar() const { return m_window->property("header").value<QQuickItem *>(); }

    /// What shows and is called \a name, or bears it as its text; null if nothing does.
    [[nodiscard]] QQuickItem *find(const QString &name, QQuickWindow *window = nullptr) const
    {
        QList<QQuickItem *> pending{(window ? window : m_window)->contentItem()};
        while (!pending.isEmpty()) {
            QQuickItem *item = pending.takeLast();
            if (!item->isVisible()) {
                continue;
            }
            const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
            // A control without an own Accessible.name bears its text, which offscreen nobody asks it to publish.
            if ((accessible && accessible->text(QAccessible::Name) == name) || item->property("text") == name) {
                return item;
            }
            pending += item->childItems();
        }
        return nullptr;
    }

    /// A press in the middle of a control, once it shows, is enabled and no page is on its way.
    void click(const QString &name)
    {
        const auto *pages = bar()->property("stackView").value<QObject *>();
        QTRY_VERIFY2(find(name) && find(name)->isEnabled() && !pages->property("busy").toBool(), qPrintable(name));
        QVERIFY(QQuickTest::qWaitForPolish(m_window)); // everything is in its place
        const QQuickItem *item = find(name);
        const QPoint place = item->mapToScene(item->boundingRect().center()).toPoint();
        QTest::mouseClick(m_window, Qt::LeftButton, {}, place);
    }

    void key(Qt::Key key) { QTest::keyClick(m_window, key); }

    /// Types over what stands in \a field, which keeps the focus.
    void type(const QString &field, const QString &typed)
    {
        click(field);
        QTest::keySequence(m_window, QKeySequence::SelectAll);
        key(Qt::Key_Delete);
        for (const QChar character : typed) {
            QTest::keyClick(m_window, character.toLatin1());
        }
    }

    /// Does \a action as soon as a control called \a name shows, from inside whatever wait spins the event loop.
    void onceShown(const QString &name, const std::function<void()> &action)
    {
        auto *timer = new QTimer(m_window);
        QObject::connect(timer, &QTimer::timeout, m_window, [this, name, action, timer] {
            if (const QQuickItem *item = find(name); item && item->isEnabled() && item->opacity() == 1.0) {
                timer->stop();
                action();
            }
        });
        timer->start(10);
    }

    /// From the connection page to the dashboard; \a board is the text of its button. The wake-up button is pressed
    /// when asked for.
    void connectBoard(const QString &board)
    {
        QSignalSpy connected(m_manager, &ZepManager::connected);
        m_manager->serialPort()->ports()->setStringList({m_peer->path()}); // which disconnect() listed anew
        click(board);
        if (board == QStringLiteral("Ranger")) {
            onceShown(QStringLiteral("Please press wake up button"),
                      [this] { m_peer->say("RANGER -- BUTTON PUSHED"); });
        }
        click(QStringLiteral("Connect"));
        QTRY_COMPARE(connected.count(), 1);
        QTRY_COMPARE(bar()->state(), QStringLiteral("dashboardPage"));
    }

    QTemporaryDir m_dir;
    bool m_answering = true;
    std::unique_ptr<ScriptedPeer> m_peer;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow *m_window = nullptr;
    ZepManager *m_manager = nullptr;
};
