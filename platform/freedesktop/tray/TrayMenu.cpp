// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrayMenu.h"

#include <QKeyEvent>
#include <QKeySequence>

#include <algorithm>

namespace lapsa {

TrayMenu::TrayMenu(const QList<StatusMenuEntry>& entries)
{
    for (const StatusMenuEntry& entry : entries) {
        if (entry.title.isEmpty()) {
            addSeparator();
            continue;
        }
        QAction* const action = addAction(entry.title, this, entry.action);
        action->setShortcut(QKeySequence(entry.shortcut, QKeySequence::PortableText));
        action->setShortcutVisibleInContextMenu(true);
    }
}

/// The toolkit handles shortcuts only in active windows, and a menu is not active.
void TrayMenu::keyPressEvent(QKeyEvent* event)
{
    const QKeySequence pressed(event->keyCombination());
    const QList<QAction*> entries = actions();
    const auto found = std::ranges::find_if(entries, [&pressed](const QAction* entry) {
        return !entry->shortcut().isEmpty() && entry->shortcut() == pressed;
    });
    if (found == entries.end()) {
        QMenu::keyPressEvent(event);
        return;
    }
    close();
    (*found)->trigger();
}

} // namespace lapsa
