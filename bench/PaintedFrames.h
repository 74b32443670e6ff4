// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QSet>
#include <QWidget>

#include <functional>

namespace lapsa::bench {

/// Notes which widgets were painted.
class PaintNotes final : public QObject
{
public:
    void watch(QWidget& widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override;

    QSet<QObject*> painted;
};

/// Handles events, asleep in between, until something holds. Ends the program after half a minute.
void waitUntil(const std::function<bool()>& condition);

/// Until something of the noted was painted and the X server has drawn it.
void waitForFrame(const PaintNotes& notes);

void waitUntilActive(const QWidget& window);

/// What the user works in before and after. Once it has the focus, the window manager is done with what was closed.
class OtherWindow final : public QWidget
{
public:
    OtherWindow();

    void takeFocus();
};

} // namespace lapsa::bench
