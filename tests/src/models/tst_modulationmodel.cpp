// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "Criticals.h"
#include "ModulationModel.h"

class ModulationModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnCritical(); }

    void onlyFilesOfRealModulationsAreRead()
    {
        const QString folder = "blocks";
        const QTemporaryDir home;
        QVERIFY(QDir::setCurrent(home.path()) && QDir().mkpath(folder + "/radio_conf_1_2_3_SHRA4"));
        const auto write = [](const QString &path, const QByteArray &content) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
        };
        QVERIFY(write("config.ini", "[rconf]\ndir=blocks\n"));
        QVERIFY(write(folder + "/radio_conf_01_868_14_HRZ.bin", "\xAB\xCD"));
        for (const char *name : {"1_2_3_UNKNOWN", "1_2_3_MODULATION_LAST", "1_2_3_hra2", "1_2_HRA2", "1x_2_3_HRA2",
                                 "1_2_3_HRA2_old", "1_2_3_SHRA4/radio_conf_1_2_3_SHRA4"}) {
            QVERIFY(write(folder + "/radio_conf_" + name + ".bin", "\x01"));
        }
        const ModulationModel model;
        QCOMPARE(model.radioConf(ModulationModel::HRZ), "abcd");
        for (const int other : {-1, 0, 2, 3, 4}) {
            QVERIFY(model.radioConf(static_cast<ModulationModel::Modulation>(other)).isEmpty());
        }
    }

    void modulationWithoutARowAllowsNothing()
    {
        ModulationModel model;
        QList<uint> told;
        connect(&model, &ModulationModel::allowedSizeChanged, this, [&](const QList<uint> &sizes) { told = sizes; });
        QCOMPARE(model.property("allowedSizeListStr"), "N/A");
        model.setModulation(ModulationModel::HRA2);
        QCOMPARE(model.property("allowedSizeListStr"), "4, 8, 12, 16, 20, 24");
        QCOMPARE(told.size(), 6);
        model.setModulation(static_cast<ModulationModel::Modulation>(-1)); // a name that is no key
        QCOMPARE(model.property("modulation"), QString());
        QCOMPARE(model.property("allowedSizeListStr"), QString());
        QVERIFY(told.isEmpty());
    }
};

QTEST_GUILESS_MAIN(ModulationModelTest)
#include "tst_modulationmodel.moc"
