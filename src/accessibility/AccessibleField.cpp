// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "AccessibleField.h"

#include <QMetaObject>
#include <QQuickWindow>

void *AccessibleField::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface) {
        return static_cast<QAccessibleTextInterface *>(this);
    }
    if (type == QAccessible::EditableTextInterface) {
        return static_cast<QAccessibleEditableTextInterface *>(this);
    }
    return AccessibleItem::interface_cast(type);
}

bool AccessibleField::isEditable() const
{
    return item()->isEnabled() && !item()->property("readOnly").toBool();
}

QString AccessibleField::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Value ? content() : AccessibleItem::text(kind);
}

QAccessible::State AccessibleField::state() const
{
    QAccessible::State state = AccessibleItem::state();
    state.editable = isEditable();
    state.readOnly = !isEditable();
    state.selectableText = true;
    return state;
}

void AccessibleField::selection(int index, int *start, int *end) const
{
    *start = index == 0 ? item()->property("selectionStart").toInt() : 0;
    *end = index == 0 ? item()->property("selectionEnd").toInt() : 0;
}

int AccessibleField::selectionCount() const
{
    return item()->property("selectedText").toString().isEmpty() ? 0 : 1;
}

void AccessibleField::addSelection(int start, int end)
{
    setSelection(0, start, end);
}

void AccessibleField::removeSelection(int)
{
    QMetaObject::invokeMethod(item(), "deselect");
}

void AccessibleField::setSelection(int, int start, int end)
{
    QMetaObject::invokeMethod(item(), "select", Q_ARG(int, start), Q_ARG(int, end));
}

int AccessibleField::cursorPosition() const
{
    return item()->property("cursorPosition").toInt();
}

void AccessibleField::setCursorPosition(int position)
{
    item()->setProperty("cursorPosition", position);
}

QString AccessibleField::text(int start, int end) const
{
    return content().mid(start, end < 0 ? -1 : end - start);
}

int AccessibleField::characterCount() const
{
    return static_cast<int>(content().size());
}

QRect AccessibleField::characterRect(int offset) const
{
    QRectF place;
    QMetaObject::invokeMethod(item(), "positionToRectangle", Q_RETURN_ARG(QRectF, place), Q_ARG(int, offset));
    return place.translated(rect().topLeft()).toRect();
}

int AccessibleField::offsetAtPoint(const QPoint &point) const
{
    const QPoint inItem = point - rect().topLeft();
    for (int offset = characterCount() - 1; offset >= 0; --offset) {
        if (characterRect(offset).left() - rect().left() <= inItem.x()) {
            return offset;
        }
    }
    return -1;
}

void AccessibleField::scrollToSubstring(int start, int)
{
    setCursorPosition(start);
}

QString AccessibleField::attributes(int, int *start, int *end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

void AccessibleField::deleteText(int start, int end)
{
    replaceText(start, end, {});
}

void AccessibleField::insertText(int offset, const QString &text)
{
    replaceText(offset, offset, text);
}

void AccessibleField::replaceText(int start, int end, const QString &text)
{
    if (!isEditable()) {
        return;
    }
    if (end > start) {
        QMetaObject::invokeMethod(item(), "remove", Q_ARG(int, start), Q_ARG(int, end));
    }
    QMetaObject::invokeMethod(item(), "insert", Q_ARG(int, start), Q_ARG(QString, text));
    QMetaObject::invokeMethod(item(), "textEdited"); // as by a key
}
