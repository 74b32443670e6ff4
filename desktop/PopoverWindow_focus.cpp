// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PointerMonitor.h"
#include "PopoverWindow.h"
#include "WindowFrame.h"

#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <memory>

namespace lapsa {

using namespace std::chrono_literals;

namespace {

/// How long the focus may take to return from a closed dialog.
constexpr auto returnPatience = 300ms;

/// Not over a window of this program: a click on one shows as a focus change.
bool pointerIsElsewhere()
{
    return QApplication::topLevelAt(QCursor::pos()) == nullptr;
}

/// Neither a menu nor a splash screen.
bool isOrdinary(const QWindow& window)
{
    return window.type() == Qt::Window || window.type() == Qt::Dialog;
}

} // namespace

bool PopoverWindow::eventFilter(QObject* watched, QEvent* event)
{
    auto* const dialog = qobject_cast<QDialog*>(watched);
    if (dialog != nullptr && event->type() == QEvent::Show && !event->spontaneous()) {
        dialog->move(beside(centredFrame(*dialog, m_workArea)).topLeft());
    }
    // When a dialog that had the focus closes, no window has it, and no signal reports that.
    if (dialog != nullptr && event->type() == QEvent::Hide && m_hadFocus) {
        m_returning.start(returnPatience);
        m_leaving.start(0ms);
    }
    return QWidget::eventFilter(watched, event);
}

void PopoverWindow::focusMovedTo(QWindow* window)
{
    if (!isVisible()) {
        return;
    }
    standBelow(window);
    if (owns(window)) {
        m_hadFocus = true;
        m_leaving.stop();
    } else if (m_hadFocus) {
        m_leaving.start(0ms);
    }
}

/// The popover stays above other programs, but must not cover a window of this program while the user works in that.
void PopoverWindow::standBelow(QWindow* active)
{
    const bool below = active != nullptr && !owns(active) && isOrdinary(*active);
    if (windowHandle() != nullptr) {
        windowHandle()->setFlag(Qt::WindowStaysOnTopHint, !below);
    }
    if (below) {
        active->raise();
    }
}

void PopoverWindow::closeIfLeft()
{
    if (!isVisible() || owns(QGuiApplication::focusWindow()) || showsOwnDialog()) {
        return;
    }
    if (m_returning.isActive()) {
        // A dialog was closed. The window manager may not know where its focus came from, and may give it away.
        activateWindow();
        m_leaving.start(returnPatience);
    } else if (m_behavior == Behavior::Transient) {
        m_closeReason = CloseReason::FocusLost;
        hide();
    }
}

void PopoverWindow::watchClicks()
{
    if (m_behavior == Behavior::ApplicationDefined) {
        m_clicks.reset();
    } else if (!m_clicks) {
        m_clicks = m_environment.pointer.watch();
        connect(m_clicks.get(), &PointerWatch::pressed, this, &PopoverWindow::buttonPressed);
        connect(m_clicks.get(), &PointerWatch::released, this, &PopoverWindow::buttonReleased);
    }
}

void PopoverWindow::buttonPressed()
{
    // The taskbar may forward the click that opens the panel before its release is reported.
    m_pressedElsewhere = isVisible() && pointerIsElsewhere();
}

/// Taskbars react to the release of a click. If the panel closed at the press, a slow click on the icon would find it
/// closed and open it again. Dragging out of the panel or onto it is not a click elsewhere.
void PopoverWindow::buttonReleased()
{
    if (isVisible() && m_behavior == Behavior::Transient && !showsOwnDialog() && m_pressedElsewhere &&
        pointerIsElsewhere()) {
        m_closeReason = CloseReason::FocusLost;
        hide();
    }
}

bool PopoverWindow::owns(const QWindow* window) const
{
    for (; window != nullptr; window = window->transientParent()) {
        if (window == windowHandle()) {
            return true;
        }
    }
    return false;
}

bool PopoverWindow::showsOwnDialog() const
{
    return std::ranges::any_of(QGuiApplication::topLevelWindows(), [this](const QWindow* window) {
        return window != windowHandle() && window->isVisible() && owns(window);
    });
}

} // namespace lapsa
