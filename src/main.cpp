// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "AccessibleItem.h"
#include "Identity.h"
#include "QmlTypes.h"
#include "SettingsStore.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlApplicationEngine>
#include <QQmlContext>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;

    // Before anything reads a setting: QSettings derives its store from the identity.
    QGuiApplication::setApplicationName(Identity::name);
    QGuiApplication::setApplicationVersion(Identity::version);
    QGuiApplication::setOrganizationName(Identity::organization);
    QGuiApplication::setOrganizationDomain(Identity::organizationDomain);
    SettingsStore::mend();

    registerQmlTypes();
    AccessibleItem::install();
    QLoggingCategory::setFilterRules(u"*.debug=false\n*.info=false\n*.warning=false\n*.critical=true"_s);
    engine.rootContext()->setContextProperty(u"QT_VERSION"_s, QString::fromLatin1(qVersion()));
    engine.load(QUrl(u"qrc:/qml/main.qml"_s));
    if (engine.rootObjects().isEmpty()) {
        return -1;
    }
    return QGuiApplication::exec();
}
