// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQmlIntegration>

/// Settings of the profile PERIODIC. Accepts any byte: the limits are those of the input fields. The setters store
/// and emit, also without a change.
class PeriodicProfile : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(uchar period READ period WRITE setPeriod NOTIFY periodChanged)
    Q_PROPERTY(uchar redundancy READ redundancy WRITE setRedundancy NOTIFY redundancyChanged)
    Q_PROPERTY(uchar delay READ delay WRITE setDelay NOTIFY delayChanged)

public:
    static constexpr uchar s_defaultPeriod = 5;
    static constexpr uchar s_defaultRedundancy = 4;
    static constexpr uchar s_defaultDelay = 60;

    explicit PeriodicProfile(QObject *parent = nullptr);

    /// Minutes between two different payloads; the interface calls it "Payload interval".
    [[nodiscard]] uchar period() const { return m_period; }
    /// Times that each payload is sent.
    [[nodiscard]] uchar redundancy() const { return m_redundancy; }
    /// Seconds between two Tx of the same payload; the interface calls it "Period".
    [[nodiscard]] uchar delay() const { return m_delay; }

public Q_SLOTS:
    void setPeriod(uchar period);
    void setRedundancy(uchar redundancy);
    void setDelay(uchar delay);

Q_SIGNALS:
    void periodChanged();
    void redundancyChanged();
    void delayChanged();

private:
    uchar m_period = s_defaultPeriod;
    uchar m_redundancy = s_defaultRedundancy;
    uchar m_delay = s_defaultDelay;
};
