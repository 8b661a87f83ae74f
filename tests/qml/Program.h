// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "AccessibleItem.h"
#include "Criticals.h"
#include "QmlTypes.h"
#include "ScriptedSession.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQmlExpression>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// A window as its user meets it: what shows, by its text or by the name that a screen reader tells, mouse and keys.
struct Screen
{
    QQuickWindow *window = nullptr;

    explicit Screen(QQuickWindow *shown = nullptr) : window(shown) {}
    virtual ~Screen() = default;

    /// The first item of that name that shows and has the property \a having; null if there is none.
    QQuickItem *find(const QString &name, const char *having = "visible", const QQuickItem *in = nullptr) const
    {
        const auto children = (in != nullptr ? in : window->contentItem())->childItems();
        for (QQuickItem *child : children) {
            if (!child->isVisible()) {
                continue;
            }
            const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(child);
            // A control without an own Accessible.name bears its text, which offscreen nobody asks it to publish.
            const bool named = (accessible && accessible->text(QAccessible::Name) == name) ||
                               (!name.isEmpty() && child->property("text") == name);
            if (named && child->property(having).isValid()) {
                return child;
            }
            if (QQuickItem *item = find(name, having, child)) {
                return item;
            }
        }
        return nullptr;
    }

    /// The field beside the label of that text.
    QQuickItem *field(const QString &name) const { return find(name, "acceptableInput"); }
    QString text(const QString &name) const { return field(name)->property("text").toString(); }
    bool checked(const QString &name) const { return find(name, "checked")->property("checked").toBool(); }
    bool enabled(const QString &name, const char *having = "visible") const { return find(name, having)->isEnabled(); }

    static QPoint centre(const QQuickItem *item) { return item->mapToScene(item->boundingRect().center()).toPoint(); }

    /// Moves the mouse there as soon as it shows and is enabled, and nothing moves any more.
    void hover(const QString &name, const char *having = "visible") const
    {
        QSignalSpy frame(window, &QQuickWindow::frameSwapped);
        window->update();
        frame.wait();
        QTRY_VERIFY2(find(name, having) && find(name, having)->isEnabled(), qPrintable(name));
        QTest::mouseMove(window, centre(find(name, having)));
    }

    virtual void click(const QString &name, const char *having = "visible") const
    {
        hover(name, having);
        QTRY_VERIFY2(find(name, having), qPrintable(name));
        QTest::mouseClick(window, Qt::LeftButton, {}, centre(find(name, having)));
    }

    /// Puts \a text in place of what a field holds, key by key.
    void enter(const QString &name, const QString &text) const
    {
        click(name, "acceptableInput");
        QTest::keySequence(window, QKeySequence::SelectAll);
        QTest::keyClick(window, Qt::Key_Delete);
        for (const QChar key : text) {
            QTest::keyClick(window, key.toLatin1());
        }
    }

    static QVariant evaluate(QObject *scope, const QString &expression)
    {
        return QQmlExpression(qmlContext(scope), scope, expression).evaluate();
    }
};

/// The real window on the real ZepManager, in a folder of its own; a scripted device stands at the far end of the line.
/// It says "+OK" to whatever \c answers does not hold. A critical message that is not expected, or an error in a QML
/// file, fails the test.
struct Program : Screen, Place
{
    explicit Program(const QString &aopUrl = {}) : Place(aopUrl)
    {
        QSettings().setValue(QStringLiteral("firstVisit"), false);
        static const bool registered = (registerQmlTypes(), AccessibleItem::install(), true);
        Q_UNUSED(registered)
        QObject::connect(&peer, &ScriptedPeer::requested, &peer, [this](const QString &request) {
            for (const QString &line : answers.value(request, {QStringLiteral("+OK")})) {
                peer.say(line.toUtf8());
            }
        });
        start();
    }

    void start()
    {
        engine = std::make_unique<QQmlApplicationEngine>();
        engine->rootContext()->setContextProperty(QStringLiteral("QT_VERSION"), QString::fromLatin1(qVersion()));
        engine->load(QUrl(QStringLiteral("qrc:/qml/main.qml")));
        window = qobject_cast<QQuickWindow *>(engine->rootObjects().value(0));
        QVERIFY(window && QTest::qWaitForWindowExposed(window));
        manager = qobject_cast<ZepManager *>(singleton("com.sarvane.qml", "ZepManager"));
        manager->serialPort()->ports()->setStringList({peer.path()});
    }

    void stop()
    {
        engine.reset();
        window = nullptr;
    }

    QObject *singleton(const char *module, const char *type) const
    {
        return engine->singletonInstance<QObject *>(qmlTypeId(module, 1, 0, type));
    }

    QQuickItem *bar() const { return window->property("header").value<QQuickItem *>(); }

    /// As Screen's, once no page moves any more.
    void click(const QString &name, const char *having = "visible") const override
    {
        const auto *pages = bar()->property("stackView").value<QObject *>();
        QTRY_VERIFY2(find(name, having) && !pages->property("busy").toBool(), qPrintable(name));
        Screen::click(name, having);
    }

    /// A session whose page has come to rest. The wake-up button of a Ranger is pressed when asked for.
    void connectTo(ZepBoard::Module module)
    {
        QObject::connect(manager, &ZepManager::userActionRequested, &peer,
                         [this] { peer.say("RANGER -- BUTTON PUSHED"); });
        manager->connect(module, peer.path(), QStringLiteral("Default"));
        QTRY_COMPARE(bar()->state(), QStringLiteral("dashboardPage"));
        QTRY_VERIFY(!bar()->property("stackView").value<QObject *>()->property("busy").toBool());
        QTRY_VERIFY(!find(QStringLiteral("Please press wake up button")));
        peer.forgetRequests();
    }

    TxManager *tx() const { return manager->tx(); }

    ScriptedPeer peer;
    QHash<QString, QStringList> answers;
    std::unique_ptr<QQmlApplicationEngine> engine;
    ZepManager *manager = nullptr;
};

/// A test with a program, and the short way to what it shows.
class ProgramTest : public QObject
{
protected:
    QQuickItem *find(const QString &name, const QQuickItem *in = nullptr) const
    {
        return m_ui->find(name, "visible", in);
    }
    void click(const QString &name) const { m_ui->click(name); }
    void clickOn(const QQuickItem *item) const
    {
        QTest::mouseClick(m_ui->window, Qt::LeftButton, {}, Screen::centre(item));
    }

    std::unique_ptr<Program> m_ui;
};
