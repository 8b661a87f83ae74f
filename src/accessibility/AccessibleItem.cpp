// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "AccessibleItem.h"

#include "AccessibleControl.h"
#include "AccessibleField.h"
#include "AccessibleLines.h"

#include <QQmlContext>
#include <QQmlProperty>
#include <QQuickWindow>

namespace {
QAccessibleInterface *interfaceOf(const QString &className, QObject *object)
{
    auto *item = qobject_cast<QQuickItem *>(object);
    // The factory is asked for each class of an object, the most derived one first.
    if (item == nullptr || className != QLatin1String(object->metaObject()->className())) {
        return nullptr;
    }
    if (item->inherits("QQuickTextField")) {
        return new AccessibleField(item);
    }
    if (item->inherits("QQuickSpinBox") || item->inherits("QQuickComboBox") ||
        (item->inherits("QQuickAbstractButton") &&
         (item->inherits("QQuickMenuItem") || !item->inherits("QQuickItemDelegate")))) {
        return new AccessibleControl(item);
    }
    if (item->property("mList").isValid()) {
        return new AccessibleLines(item);
    }
    return nullptr;
}
} // namespace

void AccessibleItem::install()
{
    QAccessible::installFactory(&interfaceOf);
}

AccessibleItem::AccessibleItem(QQuickItem *item) : QAccessibleObject(item)
{
    QObject::connect(item, &QQuickItem::enabledChanged, item, [item] {
        QAccessible::State changed;
        changed.disabled = true;
        QAccessibleStateChangeEvent event(item, changed);
        QAccessible::updateAccessibility(&event);
    });
}

QVariant AccessibleItem::attached(const char *name) const
{
    return QQmlProperty::read(item(), QStringLiteral("Accessible.") + QLatin1String(name), qmlContext(item()));
}

QRect AccessibleItem::rect() const
{
    if (item()->window() == nullptr) {
        return {};
    }
    const QRectF inScene = item()->mapRectToScene(item()->boundingRect());
    return {item()->window()->mapToGlobal(inScene.topLeft().toPoint()), inScene.size().toSize()};
}

QAccessibleInterface *AccessibleItem::parent() const
{
    // The nearest one that counts this item among its own. Items that are none for assistive technology do not.
    for (QQuickItem *outer = item()->parentItem(); outer != nullptr; outer = outer->parentItem()) {
        QAccessibleInterface *candidate = QAccessible::queryAccessibleInterface(outer);
        if (candidate != nullptr && candidate->indexOfChild(this) >= 0) {
            return candidate;
        }
    }
    return QAccessible::queryAccessibleInterface(item()->window());
}

QAccessibleInterface *AccessibleItem::child(int index) const
{
    QQuickItem *child = children().value(index);
    return child != nullptr ? QAccessible::queryAccessibleInterface(child) : nullptr;
}

int AccessibleItem::childCount() const
{
    return static_cast<int>(children().size());
}

int AccessibleItem::indexOfChild(const QAccessibleInterface *child) const
{
    return static_cast<int>(children().indexOf(qobject_cast<QQuickItem *>(child->object())));
}

QString AccessibleItem::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Name:
        return attached("name").toString();
    case QAccessible::Description:
        return attached("description").toString();
    default:
        return {};
    }
}

QAccessible::Role AccessibleItem::role() const
{
    return static_cast<QAccessible::Role>(attached("role").toInt());
}

QAccessible::State AccessibleItem::state() const
{
    QAccessible::State state;
    const QQuickWindow *window = item()->window();
    state.invisible =
        window == nullptr || !window->isVisible() || !item()->isVisible() || qFuzzyIsNull(item()->opacity());
    state.offscreen = window != nullptr && !QRect(window->position(), window->size()).intersects(rect());
    state.disabled = !item()->isEnabled();
    state.focusable =
        item()->isEnabled() && (item()->activeFocusOnTab() || item()->property("focusPolicy").toInt() != Qt::NoFocus);
    state.focused = item()->hasActiveFocus();
    return state;
}

QWindow *AccessibleItem::window() const
{
    return item()->window();
}
