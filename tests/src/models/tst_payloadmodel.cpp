// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

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
        const QByteArray source = "src/models/PayloadModel";
        verifyBounds(model, source, "payload");
        verifyAborts("written role", source, "Invalid role value to update payload model data",
                     [&] { model.setData(model.index(0), 1, Qt::EditRole); });
    }

    void lengthIsCountedWithTheOptionBytes()
    {
        for (const auto &[digits, option, valid] : {std::tuple(9, 0, false),
                                                    {8, 0, true},
                                                    {8, int{PayloadModel::OptionAckRole}, false},
                                                    {12, int{PayloadModel::OptionAckRole}, true},
                                                    {12, int{PayloadModel::OptionMailRole}, true},
                                                    {12, int{PayloadModel::OptionImportantRole}, false}}) {
            PayloadModel model;
            model.add(QString(digits, 'A'), 4);
            QVERIFY(option == 0 || model.setData(model.index(0), true, option));
            QVERIFY(model.checkPayload(0)); // no modulation known: anything passes
            QSignalSpy checked(&model, &PayloadModel::payloadChecked);
            model.setAllowedSize({4, 8});
            QCOMPARE(checked.value(0).value(1).toBool(), valid);
            QCOMPARE(model.getStatus(0), valid ? Payload::NONE : Payload::ERROR);
        }
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
