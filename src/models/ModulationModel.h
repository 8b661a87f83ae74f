// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <QtQmlIntegration>

/// What is known of the radio's modulations: the payload sizes that each one allows, the radio configuration block
/// that selects it, and the device's last report. The report changes only by what the device says, never because a
/// block was sent.
class ModulationModel : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(uint frequencyMin READ frequencyMin NOTIFY frequencyMinChanged)
    Q_PROPERTY(uint frequencyMax READ frequencyMax NOTIFY frequencyMaxChanged)
    Q_PROPERTY(uint power READ power NOTIFY powerChanged)
    Q_PROPERTY(QString modulation READ modulation NOTIFY modulationChanged)
    Q_PROPERTY(QString allowedSizeListStr READ allowedSizeListStr NOTIFY modulationChanged)

public:
    /// The keys stand in the device's answers and in the names of the radio configuration files. MODULATION_LAST
    /// ends the real ones. The type is fixed because a name that is no key arrives as -1.
    enum Modulation : int { HRA2, HRZ, SHRA4, MODULATION_LAST, UNKNOWN };
    Q_ENUM(Modulation)

    /// Reads the radio configuration files of the folder that "rconf/dir" of "config.ini" names, relative to the
    /// working directory; "res/rconf" without it. No folder, or no file that fits, leaves the blocks empty.
    explicit ModulationModel(QObject *parent = nullptr);

    /// Bounds of the frequency range, in Hz, as the device reported them; 0 with no report.
    [[nodiscard]] uint frequencyMin() const { return m_frequencyMin; }
    [[nodiscard]] uint frequencyMax() const { return m_frequencyMax; }
    /// Power in dBm as the device reported it; 0 with no report.
    [[nodiscard]] uint power() const { return m_power; }
    /// Key of the reported modulation; empty when the device named one that does not exist.
    [[nodiscard]] QString modulation() const;
    /// Allowed payload sizes of the reported modulation in bytes, empty when it has none.
    [[nodiscard]] QList<uint> allowedSizeList() const { return m_allowedSizeMap.value(m_modulation); }
    /// The same as text, "4, 8, 12"; "N/A" while the modulation is UNKNOWN.
    [[nodiscard]] QString allowedSizeListStr() const;

    /// Radio configuration of \a modulation as lower-case hexadecimal text; empty when no file gave one.
    [[nodiscard]] QByteArray radioConf(Modulation modulation) const { return m_radioConfMap.value(modulation); }
    /// Keeps \a radioConf, hexadecimal text, for one of the real modulations; any other is ignored.
    void setRadioConf(Modulation modulation, const QByteArray &radioConf);

    /// The setters store what the device reported and emit, also without a change.
    Q_INVOKABLE void setModulation(ModulationModel::Modulation modulation);
    void setFrequencyMin(uint frequencyMin);
    void setFrequencyMax(uint frequencyMax);
    void setPower(uint power);
    /// Forgets the device's report; the blocks stay.
    void clear();

Q_SIGNALS:
    void frequencyMinChanged();
    void frequencyMaxChanged();
    void powerChanged();
    void modulationChanged(ModulationModel::Modulation modulation);
    void allowedSizeChanged(QList<uint> allowedSizeList);

private:
    void readRadioConfFolder();

    const QMap<Modulation, QList<uint>> m_allowedSizeMap;
    QMap<Modulation, QByteArray> m_radioConfMap;
    quint32 m_frequencyMin = 0;
    quint32 m_frequencyMax = 0;
    quint32 m_power = 0;
    Modulation m_modulation = UNKNOWN;
};
