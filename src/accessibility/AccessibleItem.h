// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAccessibleObject>
#include <QQuickItem>

/// What assistive technology is given of a control. The toolkit's own interfaces report a disabled control as enabled,
/// and their actions change a control without the effect of a click. These are made instead when somebody asks, and
/// cost nothing before. Name, description and role are those of the attached property Accessible.
class AccessibleItem : public QAccessibleObject
{
public:
    /// From now on controls, fields and the lines of a log are reported by these interfaces.
    static void install();

    explicit AccessibleItem(QQuickItem *item);

    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessibleInterface *parent() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QWindow *window() const override;

protected:
    [[nodiscard]] QQuickItem *item() const { return static_cast<QQuickItem *>(object()); }
    /// A property of the attached object Accessible.
    [[nodiscard]] QVariant attached(const char *name) const;
    /// The items below this one, in the order in which they are read. None but for a container.
    [[nodiscard]] virtual QList<QQuickItem *> children() const { return {}; }
};
