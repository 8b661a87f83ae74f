// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

/// The local copy of the LoRa settings of a device. Texts are hexadecimal digits without separators, in the case in
/// which they came: 16 digits for an EUI, 32 for the key, empty while nobody told. The setters store and emit, also
/// without a change, and refuse nothing: the limits are those of the input fields and of the device's grammar.
class LoRaConnectivity : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QString devEui READ devEui NOTIFY devEuiChanged)
    Q_PROPERTY(QString appEui READ appEui WRITE setAppEui NOTIFY appEuiChanged)
    Q_PROPERTY(QString appKey READ appKey WRITE setAppKey NOTIFY appKeyChanged)
    Q_PROPERTY(bool ackEnabled READ ackEnabled WRITE setAckEnabled NOTIFY ackEnabledChanged)
    Q_PROPERTY(uchar redundancy READ redundancy WRITE setRedundancy NOTIFY redundancyChanged)

public:
    explicit LoRaConnectivity(QObject *parent = nullptr);

    /// Comes from the device only, and is never written to it.
    [[nodiscard]] QString devEui() const { return m_devEui; }
    [[nodiscard]] QString appEui() const { return m_appEui; }
    [[nodiscard]] QString appKey() const { return m_appKey; }
    /// Messages are sent confirmed; the device then does not use redundancy().
    [[nodiscard]] bool ackEnabled() const { return m_ackEnabled; }
    /// Times that a payload is repeated.
    [[nodiscard]] uchar redundancy() const { return m_redundancy; }

    /// Back to the defaults, without a signal.
    void clear();

    /// \a hex as bytes joined by commas, which is how the device takes it: "0A1B" gives "0A,1B".
    [[nodiscard]] static QString toWireHex(const QString &hex);

public Q_SLOTS:
    void setDevEui(const QString &devEui);
    void setAppEui(const QString &appEui);
    void setAppKey(const QString &appKey);
    void setAckEnabled(bool ackEnabled);
    void setRedundancy(uchar redundancy);

Q_SIGNALS:
    void devEuiChanged();
    void appEuiChanged();
    void appKeyChanged();
    void ackEnabledChanged();
    void redundancyChanged();

private:
    static constexpr uchar s_defaultRedundancy = 4;

    QString m_devEui;
    QString m_appEui;
    QString m_appKey;
    bool m_ackEnabled = true;
    uchar m_redundancy = s_defaultRedundancy;
};
