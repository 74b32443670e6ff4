// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ClipboardRestore.h"

#include "EventTime.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace lapsa {

void ClipboardRestore::begin(const ClipboardContent& content)
{
    m_pending = true;
    whenEventTimeIsFresh(this, [this, content] {
        m_pending = false;
        QClipboard* const clipboard = QGuiApplication::clipboard();
        if (content.owned) {
            clipboard->setMimeData(mimeDataOf(content).release()); // the clipboard's from now on
        } else {
            clipboard->clear();
        }
    });
}

} // namespace lapsa
