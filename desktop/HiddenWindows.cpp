// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HiddenWindows.h"

#include <QApplication>
#include <QBackingStore>
#include <QWidget>

namespace lapsa {

void forgetPicturesOfHiddenWindows()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        QBackingStore* const picture = window->isVisible() ? nullptr : window->backingStore();
        if (picture != nullptr && !picture->size().isEmpty()) {
            // Not empty: the platform keeps the memory if the size is empty.
            picture->resize({1, 1});
        }
    }
}

} // namespace lapsa
