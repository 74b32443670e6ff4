// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "QtPasteboard.h"

#include "ServerTimestamp.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QString>

namespace lapsa {

void QtPasteboard::setText(const QString& text)
{
    QClipboard* const clipboard = QGuiApplication::clipboard();
    whenServerTimestampIsFresh(clipboard, [clipboard, text] { clipboard->setText(text); });
}

} // namespace lapsa
