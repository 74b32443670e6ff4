// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PaintedFrames.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>

namespace lapsa::bench {

using namespace std::chrono_literals;

namespace {

/// Only a limit for a machine under load; reached only if something is broken.
constexpr auto patience = 30s;

} // namespace

bool PaintNotes::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Paint) {
        painted.insert(watched);
    }
    return false;
}

void waitUntil(const std::function<bool()>& condition)
{
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, [] { qFatal("The benchmark waits for something that does not come."); });
    limit.start(patience);
    while (!condition()) {
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
}

void waitForFrame(const PaintNotes& notes)
{
    waitUntil([&] { return !notes.painted.isEmpty(); });
    QGuiApplication::sync();
}

void waitUntilActive(const QWidget& window)
{
    waitUntil([&] { return window.isActiveWindow(); });
    QGuiApplication::sync();
}

OtherWindow::OtherWindow()
{
    show();
    takeFocus();
}

void OtherWindow::takeFocus()
{
    activateWindow();
    waitUntilActive(*this);
}

} // namespace lapsa::bench
