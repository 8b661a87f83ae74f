// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Aborts.h"
#include "Ranger.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

// Its contract is narrower than that of QAbstractItemModelTester: an unknown role ends the program.
class TestSensorModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outsideIsRefusedOrFatal()
    {
        Ranger board(nullptr, 9600);
        SensorModel *model = board.sensorListModel();
        QVERIFY(!model->setData(model->index(8), false, SensorModel::EnableRole)); // a write past the end
        const QByteArray source = "src/models/SensorModel";
        verifyAborts("row", source, "Invalid index to access sensor model data",
                     [&] { (void)model->data(model->index(8), SensorModel::NameRole); });
        verifyAborts("role", source, "Invalid role value to access sensor model data",
                     [&] { (void)model->data(model->index(0), 264); });
        verifyAborts("written name", source, "Invalid role value to update sensor model data",
                     [&] { model->setData(model->index(0), 1, SensorModel::NameRole); });
    }

    void everyWriteIsToldAndStaysInItsRow()
    {
        Ranger board(nullptr, 9600);
        SensorModel *model = board.sensorListModel();
        const auto column = [model](int role) {
            QStringList values;
            for (int row = 0; row < model->rowCount(); ++row) {
                values << model->index(row).data(role).toString();
            }
            return values.join(u' ');
        };
        QCOMPARE(column(SensorModel::ThresholdValuesRole), u"NA NA NA NA 400,3000 4000 1 NA"_s);
        QCOMPARE(column(SensorModel::HasAlertCmdRole), u"false false false false true true true true"_s);
        QSignalSpy changed(model, &SensorModel::dataChanged);
        model->setThresholdValues(SensorModel::DRY_CONTACT, u"0"_s);
        model->setAlert(SensorModel::PUSH_BUTTON, true);
        model->setEnable(0, true); // no change
        model->setAlert(uchar(9), true);
        QCOMPARE(changed.count(), 3);
        QCOMPARE(changed.at(2).at(2).value<QList<int>>(), QList<int>{SensorModel::EnableRole});
        QCOMPARE(column(SensorModel::ThresholdValuesRole), u"NA NA NA NA 400,3000 4000 0 NA"_s);
        QCOMPARE(column(SensorModel::AlertRole), u"false false false false false false false true"_s);
    }
};

QTEST_GUILESS_MAIN(TestSensorModel)
#include "tst_sensormodel.moc"
