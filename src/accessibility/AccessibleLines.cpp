// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "AccessibleLines.h"

#include <QMetaObject>

#include <algorithm>

QList<QQuickItem *> AccessibleLines::children() const
{
    auto *view = item()->property("mList").value<QQuickItem *>();
    if (view == nullptr) {
        return {};
    }
    QList<QQuickItem *> lines = view->property("contentItem").value<QQuickItem *>()->childItems();
    lines.removeIf([view](const QQuickItem *line) {
        QQuickItem *shown = nullptr; // a row that waits to be used again is not the one at its index any more
        const int index = line->property("index").toInt();
        // clang-format off
        return !line->property("index").isValid() ||
               !QMetaObject::invokeMethod(view, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, shown), Q_ARG(int, index)) ||
               shown != line;
        // clang-format on
    });
    std::sort(lines.begin(), lines.end(), [](const QQuickItem *a, const QQuickItem *b) { return a->y() < b->y(); });
    return lines;
}
