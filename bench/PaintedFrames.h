// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QSet>
#include <QWidget>

#include <functional>

namespace lapsa::bench {

/// Records which widgets were painted.
class PaintNotes final : public QObject
{
public:
    void watch(QWidget& widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override;

    QSet<QObject*> painted;
};

/// Handles events, sleeping in between, until the condition holds. Ends the program after 30 seconds.
void waitUntil(const std::function<bool()>& condition);

/// Waits until a watched widget was painted and the X server has drawn it.
void waitForFrame(const PaintNotes& notes);

void waitUntilActive(const QWidget& window);

/// The window in use before and after. Once it has the focus, the window manager has finished with closed windows.
class OtherWindow final : public QWidget
{
public:
    OtherWindow();

    void takeFocus();
};

} // namespace lapsa::bench
