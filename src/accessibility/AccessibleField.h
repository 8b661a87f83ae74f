// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "AccessibleItem.h"

/// A text field: its text, cursor and selection can be read, and while it is enabled and not read-only, set.
class AccessibleField : public AccessibleItem, public QAccessibleTextInterface, public QAccessibleEditableTextInterface
{
public:
    using AccessibleItem::AccessibleItem;

    [[nodiscard]] void *interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::EditableText; }
    [[nodiscard]] QAccessible::State state() const override;

    void selection(int index, int *start, int *end) const override;
    [[nodiscard]] int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    [[nodiscard]] int cursorPosition() const override;
    void setCursorPosition(int position) override;
    [[nodiscard]] QString text(int start, int end) const override;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] QRect characterRect(int offset) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int start, int end) override;
    [[nodiscard]] QString attributes(int offset, int *start, int *end) const override;

    void deleteText(int start, int end) override;
    void insertText(int offset, const QString &text) override;
    void replaceText(int start, int end, const QString &text) override;

private:
    [[nodiscard]] QString content() const { return item()->property("text").toString(); }
    [[nodiscard]] bool isEditable() const;
};
