// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ModulationModel.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMetaEnum>
#include <QRegularExpression>
#include <QSettings>
#include <QStringList>

#include "SettingText.h"

namespace {

constexpr auto c_configFile = "config.ini";
constexpr auto c_folderKey = "rconf/dir";
constexpr auto c_defaultFolder = "res/rconf";
constexpr auto c_fileFilter = "radio_conf_[0-9]*_[0-9]*_[0-9]*_[a-zA-Z0-9]*.bin"; // a wildcard pattern
constexpr auto c_filePattern = "radio_conf_[0-9]*_[0-9]*_[0-9]*_([a-zA-Z0-9]*).bin";

} // namespace

ModulationModel::ModulationModel(QObject *parent)
    : QObject(parent), m_allowedSizeMap{{HRA2, {4, 8, 12, 16, 20, 24}}, {HRZ, {19}}, {SHRA4, {3}}, {UNKNOWN, {}}}
{
    readRadioConfFolder();
}

void ModulationModel::readRadioConfFolder()
{
    const QSettings config(QString::fromLatin1(c_configFile), QSettings::IniFormat);
    const QString folder = settingText(config.value(c_folderKey, c_defaultFolder));
    const QRegularExpression pattern(QString::fromLatin1(c_filePattern));
    const QMetaEnum modulations = QMetaEnum::fromType<Modulation>();

    QDirIterator files(folder, {QString::fromLatin1(c_fileFilter)}, QDir::Files);
    while (files.hasNext()) {
        const QString path = QDir::currentPath() + QLatin1Char('/') + files.next();
        QFile file(path);
        const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        const QByteArray key = pattern.match(path).captured(1).toLatin1();
        setRadioConf(static_cast<Modulation>(modulations.keyToValue(key.constData())), content.toHex());
    }
}

QString ModulationModel::modulation() const
{
    return QString::fromLatin1(QMetaEnum::fromType<Modulation>().valueToKey(m_modulation));
}

QString ModulationModel::allowedSizeListStr() const
{
    if (m_modulation == UNKNOWN) {
        return QStringLiteral("N/A");
    }
    QStringList sizes;
    for (const uint size : allowedSizeList()) {
        sizes << QString::number(size);
    }
    return sizes.join(QStringLiteral(", "));
}

void ModulationModel::setRadioConf(Modulation modulation, const QByteArray &radioConf)
{
    if (modulation >= MODULATION_LAST || modulation == -1) {
        return;
    }
    m_radioConfMap.insert(modulation, radioConf);
}

void ModulationModel::setModulation(Modulation modulation)
{
    m_modulation = modulation;
    Q_EMIT modulationChanged(modulation);
    Q_EMIT allowedSizeChanged(allowedSizeList());
}

void ModulationModel::setFrequencyMin(uint frequencyMin)
{
    m_frequencyMin = frequencyMin;
    Q_EMIT frequencyMinChanged();
}

void ModulationModel::setFrequencyMax(uint frequencyMax)
{
    m_frequencyMax = frequencyMax;
    Q_EMIT frequencyMaxChanged();
}

void ModulationModel::setPower(uint power)
{
    m_power = power;
    Q_EMIT powerChanged();
}

void ModulationModel::clear()
{
    setModulation(UNKNOWN);
    setFrequencyMax(0);
    setFrequencyMin(0);
    setPower(0);
}
