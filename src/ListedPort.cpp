// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ListedPort.h"

#include <QSerialPortInfo>
#include <QSettings>

namespace {
constexpr auto settingsGroup = "lastPort";
} // namespace

QList<ListedPort> ListedPort::ofSystem()
{
    QList<ListedPort> ports;
    const QList<QSerialPortInfo> infos = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &info : infos) {
        ports.append({info.portName(), info.serialNumber(), info.vendorIdentifier(), info.productIdentifier()});
    }
    return ports;
}

ListedPort ListedPort::last()
{
    QSettings settings;
    settings.beginGroup(settingsGroup);
    return {settings.value("name").toString(), settings.value("serialNumber").toString(),
            static_cast<quint16>(settings.value("vendor").toUInt()),
            static_cast<quint16>(settings.value("product").toUInt())};
}

void ListedPort::remember() const
{
    QSettings settings;
    settings.beginGroup(settingsGroup);
    settings.setValue("name", name);
    settings.setValue("serialNumber", serialNumber);
    settings.setValue("vendor", vendor);
    settings.setValue("product", product);
}

QString ListedPort::nameIn(const QList<ListedPort> &ports) const
{
    QString found;
    for (const ListedPort &port : ports) {
        const bool isSame = serialNumber.isEmpty()
                                ? port.name == name
                                : port.serialNumber == serialNumber && port.vendor == vendor && port.product == product;
        if (isSame && (found.isEmpty() || port.name == name)) { // some makers give every adapter the same number
            found = port.name;
        }
    }
    return found;
}
