// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAction>
#include <QList>
#include <QSet>
#include <QString>
#include <QWidget>

// What a user reads or hears of a surface.

namespace lapsa::test {

using Texts = QSet<QString>;

void note(Texts& texts, const QString& text);
void noteActions(Texts& texts, const QList<QAction*>& actions);
/// What is seen of a window, with the menus of its text fields, and what a screen reader is told.
void noteSurface(Texts& texts, QWidget& surface);

} // namespace lapsa::test
