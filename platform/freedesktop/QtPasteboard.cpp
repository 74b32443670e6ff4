// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QString>

namespace lapsa {

void QtPasteboard::setText(const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
}

} // namespace lapsa
