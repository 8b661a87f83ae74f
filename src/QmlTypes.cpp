// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "QmlTypes.h"

#include "Payload.h"
#include "SensorModel.h"
#include "TxManager.h"
#include "ZepBoard.h"

#include <QQmlEngine>

using namespace Qt::StringLiterals;

extern void qml_register_types_com_sarvane_qml(); // generated from the classes marked QML_ELEMENT

void registerQmlTypes()
{
    for (const auto *name : {"Settings", "Shortcuts", "Strings", "Style"}) {
        const QUrl url(u"qrc:/qml/singletons/%1.qml"_s.arg(QLatin1String(name)));
        qmlRegisterSingletonType(url, name, 1, 0, name);
    }
    qmlRegisterUncreatableType<ZepBoard>("ZepBoard", 1, 0, "Module", QString());
    qmlRegisterUncreatableType<Payload>("Payload", 1, 0, "Status", QString());
    qmlRegisterUncreatableType<SensorModel>("Sensor", 1, 0, "Id", QString());
    qmlRegisterUncreatableType<TxManager>("TxManager", 1, 0, "Profile", QString());

    // A linker drops what nobody names: this keeps the registration of com.sarvane.qml, which the engine then runs.
    static volatile auto keep = &qml_register_types_com_sarvane_qml;
    Q_UNUSED(keep)
}
