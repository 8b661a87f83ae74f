// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>

#include "Aborts.h"
#include "PayloadModel.h"

class PayloadModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowOrRoleThatDoesNotExistEndsTheProgram()
    {
        PayloadModel model;
        model.add(QString(), 4);
        QVERIFY(!model.setData(model.index(1), 1, 257)); // a write past the end is only refused
        const QByteArray source = "src/models/PayloadModel";
        verifyAborts("row", source, "Invalid index to access payload model data",
                     [&] { (void)model.data(model.index(1), 257); });
        verifyAborts("role", source, "Invalid role value to access payload model data",
                     [&] { (void)model.data(model.index(0), 264); });
        verifyAborts("written role", source, "Invalid role value to update payload model data",
                     [&] { model.setData(model.index(0), 1, Qt::EditRole); });
    }

    void lengthIsCountedWithTheOptionBytes_data()
    {
        QTest::addColumn<int>("digits");
        QTest::addColumn<int>("option");
        QTest::addColumn<bool>("valid");
        QTest::newRow("odd") << 9 << 0 << false;
        QTest::newRow("four bytes") << 8 << 0 << true;
        QTest::newRow("four bytes, acknowledgement") << 8 << int{PayloadModel::OptionAckRole} << false;
        QTest::newRow("six bytes, acknowledgement") << 12 << int{PayloadModel::OptionAckRole} << true;
        QTest::newRow("six bytes, downlink") << 12 << int{PayloadModel::OptionMailRole} << true;
        QTest::newRow("six bytes, important") << 12 << int{PayloadModel::OptionImportantRole} << false;
    }

    void lengthIsCountedWithTheOptionBytes()
    {
        QFETCH(const int, digits);
        QFETCH(const int, option);
        QFETCH(const bool, valid);
        PayloadModel model;
        model.add(QString(digits, 'A'), 4);
        QVERIFY(option == 0 || model.setData(model.index(0), true, option));
        QVERIFY(model.checkPayload(0)); // no modulation known: anything passes
        QSignalSpy checked(&model, &PayloadModel::payloadChecked);
        model.setAllowedSize({4, 8});
        QCOMPARE(checked.value(0).value(1).toBool(), valid);
        QCOMPARE(model.getStatus(0), valid ? Payload::NONE : Payload::ERROR);
    }

    void sequenceStateReachesAViewAndNobodyLater()
    {
        PayloadModel model;
        model.setAllowedSize({4});
        model.add(QStringLiteral("deadbeef"), 4); // stays lower case until it is edited
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData("import QtQml\nimport QtQml.Models\n"
                          "Instantiator { delegate: QtObject { required property var model\n"
                          "    property string seen: model.message + ' ' + model.redundancy + ' ' + model.status } }",
                          QUrl());
        const std::unique_ptr<QObject> view(
            component.createWithInitialProperties({{"model", QVariant::fromValue(&model)}}));
        QVERIFY2(view, qPrintable(component.errorString()));
        const auto *delegate = view->property("object").value<QObject *>();
        QVERIFY(delegate != nullptr);
        QCOMPARE(delegate->property("seen"), "deadbeef 4 0");
        model.setStatus(0, Payload::ACTIVE);
        QCOMPARE(delegate->property("seen"), "deadbeef 4 3");
        QCOMPARE(model.data(model.index(0), PayloadModel::StatusRole), int{Payload::NONE});

        model.setData(model.index(0), "0a", PayloadModel::MessageRole);
        model.setData(model.index(0), true, PayloadModel::OptionImportantRole); // tells the redundancy as well
        model.setStatus(0, Payload::COMPLETE);
        QCOMPARE(delegate->property("seen"), "0A 10 4");
        QCOMPARE(model.getStatus(0), Payload::ERROR);
    }

    void emptyMessageBecomesTheRowNumberAsAByte()
    {
        PayloadModel model;
        for (int row = 0; row <= 257; ++row) {
            model.add(QString(), 4);
        }
        QCOMPARE(model.getMessage(12), "00000012");
        QCOMPARE(model.data(model.index(257), PayloadModel::MessageRole), "00000001");
    }
};

QTEST_GUILESS_MAIN(PayloadModelTest)
#include "tst_payloadmodel.moc"
