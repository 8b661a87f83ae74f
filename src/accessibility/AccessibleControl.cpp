// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "AccessibleControl.h"

#include <QMetaObject>

void *AccessibleControl::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface) {
        return static_cast<QAccessibleActionInterface *>(this);
    }
    if (type == QAccessible::ValueInterface && isSpinBox()) {
        return static_cast<QAccessibleValueInterface *>(this);
    }
    return AccessibleItem::interface_cast(type);
}

QString AccessibleControl::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Name) {
        const QString name = AccessibleItem::text(kind);
        return name.isEmpty() ? item()->property("text").toString() : name;
    }
    if (kind == QAccessible::Value) {
        return item()->property("displayText").toString(); // of a box
    }
    return AccessibleItem::text(kind);
}

bool AccessibleControl::isCheckable() const
{
    return item()->property("checkable").toBool();
}

QAccessible::State AccessibleControl::state() const
{
    QAccessible::State state = AccessibleItem::state();
    const QVariant checked = item()->property("checked");
    state.checked = checked.toBool();
    state.checkable = isCheckable() || (checked.isValid() && role() == QAccessible::RadioButton);
    state.pressed = item()->property("down").toBool();
    state.hasPopup = isComboBox();
    state.expanded = isComboBox() && item()->property("popup").value<QObject *>()->property("visible").toBool();
    return state;
}

QStringList AccessibleControl::actionNames() const
{
    if (isSpinBox()) {
        return {increaseAction(), decreaseAction(), setFocusAction()};
    }
    if (isComboBox()) {
        return {showMenuAction(), pressAction(), setFocusAction()};
    }
    return isCheckable() ? QStringList{toggleAction(), pressAction(), setFocusAction()}
                         : QStringList{pressAction(), setFocusAction()};
}

QStringList AccessibleControl::keyBindingsForAction(const QString &) const
{
    const QString key = item()->property("mKey").toString();
    return key.isEmpty() ? QStringList() : QStringList{key};
}

void AccessibleControl::doAction(const QString &name)
{
    if (!item()->isEnabled()) {
        return;
    }
    if (name == setFocusAction()) {
        item()->forceActiveFocus(Qt::OtherFocusReason);
    } else if (isSpinBox()) {
        const bool isUp = name == increaseAction();
        const QVariant before = item()->property("value");
        QMetaObject::invokeMethod(item(), isUp ? "increase" : "decrease");
        if (item()->property("value") != before) {
            QMetaObject::invokeMethod(item(), "valueModified");
        }
    } else if (isComboBox()) {
        auto *popup = item()->property("popup").value<QObject *>();
        QMetaObject::invokeMethod(popup, popup->property("visible").toBool() ? "close" : "open");
    } else {
        click();
    }
}

void AccessibleControl::click()
{
    // A button of an exclusive group that is checked stays so.
    const bool stays = item()->property("checked").toBool() && item()->property("autoExclusive").toBool();
    if (isCheckable() && !stays) {
        QMetaObject::invokeMethod(item(), "toggle");
        QMetaObject::invokeMethod(item(), "toggled");
    }
    QMetaObject::invokeMethod(item(), "clicked");
}

QVariant AccessibleControl::currentValue() const
{
    return item()->property("value");
}

void AccessibleControl::setCurrentValue(const QVariant &value)
{
    if (item()->isEnabled()) {
        item()->setProperty("value", value.toInt());
        QMetaObject::invokeMethod(item(), "valueModified");
    }
}

QVariant AccessibleControl::maximumValue() const
{
    return item()->property("to");
}

QVariant AccessibleControl::minimumValue() const
{
    return item()->property("from");
}

QVariant AccessibleControl::minimumStepSize() const
{
    return item()->property("stepSize");
}
