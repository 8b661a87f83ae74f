// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PrepassModel.h"

#include <QBuffer>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

// A header and three rows high, and rows glide into place, as in the pane of the passes.
constexpr auto windowSource = R"(
    import QtQuick
    Window {
        required property var passes
        visible: true; width: 200; height: 80
        ListView {
            objectName: "list"; anchors.fill: parent
            model: passes
            header: Item { height: 20 }
            delegate: Text {
                required property string satelliteName
                required property bool isActive
                height: 20; text: satelliteName + (isActive ? "*" : "")
            }
            displaced: Transition { NumberAnimation { properties: "x,y"; duration: 200 } }
        }
    })";

/// What a user sees of a model whose clear() names a row too many, whose sort is silent and whose rows are named by a
/// byte.
class tst_PassList : public QObject
{
    Q_OBJECT

    QString shown() const
    {
        QMap<qreal, QString> rows;
        for (const QQuickItem *item : m_list->property("contentItem").value<QQuickItem *>()->childItems()) {
            const qreal y = item->y() - m_list->property("contentY").toReal();
            if (item->property("text").isValid() && item->isVisible() && y >= 0 && y < m_list->height()) {
                rows.insert(y, item->property("text").toString());
            }
        }
        return QStringList(rows.values()).join(' ').trimmed(); // few; clazy:exclude=container-anti-pattern
    }

    /// Imports passes of these names, a letter each, that start in the order of the alphabet.
    void import(const QString &names)
    {
        QByteArray table = "Satellite;Start date/time;Middle date/time;End date/time;Duration;Middle elevation;Start "
                           "azimuth;Middle azimuth;End azimuth\n";
        for (const QChar name : names) {
            const QDateTime start = QDate(2030, 1, 1).startOfDay().addDays(name.unicode());
            table += (name + start.toString(";MM-dd-yyyy hh:mm:ss") + ";;;00:10:00;5;;;\n").toLatin1();
        }
        QBuffer file(&table);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(m_model.loadFromCsv(file, QDateTime::fromSecsSinceEpoch(0)));
    }

    PrepassModel m_model;
    QQmlApplicationEngine m_engine;
    QQuickItem *m_list = nullptr;

private Q_SLOTS:
    void init()
    {
        m_model.clear();
        m_engine.setInitialProperties({{"passes", QVariant::fromValue(&m_model)}});
        m_engine.loadData(windowSource);
        m_list = m_engine.rootObjects().constLast()->findChild<QQuickItem *>("list");
        QVERIFY(QTest::qWaitForWindowExposed(m_list->window()));
    }

    void listShowsTheModel_data()
    {
        QTest::addColumn<QString>("steps"); // a table, or: 0 clear; $ scroll to the end; ! write to row 256
        QTest::addColumn<QString>("rows");
        const QString many = QString("ABC").repeated(100);
        const auto row = [](const char *name, const QString &steps, const char *rows) {
            QTest::newRow(name) << steps << QString(rows);
        };
        row("empty list cleared", "0 0 0 CBA", "A B C");
        row("shorter table at the end of a long one", many + " $ FED", "D E F");
        row("cleared at the end of a long one", many + " $ 0 ED", "D E");
        row("row 256 is row 0", many + " !", "A* A A");
    }

    void listShowsTheModel()
    {
        QFETCH(const QString, steps);
        QFETCH(const QString, rows);
        for (const QString &step : steps.split(' ')) {
            if (step == "0") {
                m_model.clear();
            } else if (step == "$") {
                QMetaObject::invokeMethod(m_list, "positionViewAtEnd");
            } else if (step == "!") {
                m_model.removeAt(static_cast<uchar>(256));
                m_model.setIsActive(static_cast<uchar>(256), true);
            } else {
                import(step);
            }
            QMetaObject::invokeMethod(m_list, "forceLayout"); // the list takes the step in
            QCOMPARE(m_list->property("count").toInt(), m_model.rowCount());
        }
        QTRY_COMPARE_WITH_TIMEOUT(shown(), rows, 1000);
    }
};

QTEST_MAIN(tst_PassList)
#include "tst_passlist.moc"
