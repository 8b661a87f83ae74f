// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "AccessibleItem.h"

/// A button of any kind, a spin box or a combo box, with the actions of its kind. A disabled control ignores them.
class AccessibleControl : public AccessibleItem, public QAccessibleActionInterface, public QAccessibleValueInterface
{
public:
    using AccessibleItem::AccessibleItem;

    [[nodiscard]] void *interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::State state() const override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString &name) const override;

    // Of a spin box.
    [[nodiscard]] QVariant currentValue() const override;
    void setCurrentValue(const QVariant &value) override;
    [[nodiscard]] QVariant maximumValue() const override;
    [[nodiscard]] QVariant minimumValue() const override;
    [[nodiscard]] QVariant minimumStepSize() const override;

private:
    [[nodiscard]] bool isSpinBox() const { return item()->inherits("QQuickSpinBox"); }
    [[nodiscard]] bool isComboBox() const { return item()->inherits("QQuickComboBox"); }
    [[nodiscard]] bool isCheckable() const;
    /// As a click of the mouse would.
    void click();
};
