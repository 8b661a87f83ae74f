// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Aborts.h"
#include "Ranger.h"

#include <QSignalSpy>
#include <QStringListModel>

// Its contract is narrower than that of QAbstractItemModelTester: an unknown role ends the program.
class TestSensorModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outsideIsRefusedOrFatal()
    {
        Ranger board(nullptr, 9600);
        SensorModel *model = board.sensorListModel();
        QStringListModel longer(QStringList(9)); // the model itself gives no index past its end
        const QModelIndex behind = longer.index(8);
        QVERIFY(!model->setData(QModelIndex(), false, SensorModel::EnableRole));
        QVERIFY(!model->setData(behind, false, SensorModel::EnableRole));
        QSignalSpy changed(model, &SensorModel::dataChanged);
        model->setAlert(uchar(8), true);
        model->setEnable(0, true); // no change
        QCOMPARE(changed.count(), 1);
        const QByteArray source = "src/models/SensorModel";
        verifyAborts("row", source, "Invalid index to access sensor model data",
                     [&] { (void)model->data(QModelIndex(), SensorModel::NameRole); });
        verifyAborts("row behind", source, "Invalid index to access sensor model data",
                     [&] { (void)model->data(behind, SensorModel::NameRole); });
        verifyAborts("role", source, "Invalid role value to access sensor model data",
                     [&] { (void)model->data(model->index(0), 264); });
        verifyAborts("written name", source, "Invalid role value to update sensor model data",
                     [&] { model->setData(model->index(0), 1, SensorModel::NameRole); });
    }
};

QTEST_GUILESS_MAIN(TestSensorModel)
#include "tst_sensormodel.moc"
