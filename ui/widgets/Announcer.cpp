// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Announcer.h"

#include <QAccessible>

namespace lapsa {

Announcer::Announcer(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    setGeometry(0, 0, 1, 1);
}

void Announcer::announce(const QString& text)
{
    if (!QAccessible::isActive() || !isVisible()) {
        return;
    }
    // Screen readers read a notification when it appears, wherever the focus is; the toolkit has no better way yet.
    setAccessibleName(text);
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

} // namespace lapsa
