// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "PopoverPlacement.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

#include <memory>

class QWindow;

namespace lapsa {

class PointerMonitor;
class PointerWatch;
class WindowSystem;

/// A frameless window that stays on top, with rounded corners and a soft shadow where the desktop can show them, square
/// with a hairline where it cannot. It is hidden when it is closed, and kept.
class PopoverWindow final : public QWidget
{
    Q_OBJECT

public:
    enum class Behavior
    {
        /// Closes only when it is told to.
        ApplicationDefined,
        /// Closes as well when the user turns to something else, and by Escape.
        Transient,
    };

    enum class CloseReason
    {
        Asked,
        FocusLost,
    };

    /// What the window needs of the desktop. Both outlive it.
    struct Environment
    {
        WindowSystem& windowSystem;
        PointerMonitor& pointer;
    };

    /// Takes ownership of `content`, whose size is the popover's and whose ground is its ground.
    PopoverWindow(const Environment& environment, QWidget* content);
    ~PopoverWindow() override;

    [[nodiscard]] QWidget& content() const { return *m_content; }

    [[nodiscard]] Behavior behavior() const { return m_behavior; }

    void setBehavior(Behavior behavior) { m_behavior = behavior; }

    /// Comes up with its content at that place inside the work area, or goes there when it is up already.
    void present(const PopoverPlacement& placement, const QRect& workArea);

    /// Where another window goes that wants to be at `frame`: beside the popover, where it would lie under it.
    [[nodiscard]] QRect beside(const QRect& frame) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void didClose(lapsa::PopoverWindow::CloseReason reason);

protected:
    void childEvent(QChildEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void adaptToDesktop();
    void moveTo(const PopoverPlacement& placement, const QRect& workArea);
    void startAnimation(PopoverPlacement::Side side);
    void focusMovedTo(QWindow* window);
    void standBelow(QWindow* active);
    void closeIfLeft();
    void watchClicks();
    void buttonPressed();
    void buttonReleased();
    [[nodiscard]] bool owns(const QWindow* window) const;
    [[nodiscard]] bool showsOwnDialog() const;

    Environment m_environment;
    QWidget* m_content;
    /// Where it is, without its shadow, and the room that there is.
    QRect m_place;
    QRect m_workArea;
    Behavior m_behavior = Behavior::ApplicationDefined;
    CloseReason m_closeReason = CloseReason::Asked;
    bool m_hadFocus = false;
    QTimer m_leaving;
    /// Runs while the focus of a closed dialog is still on its way back.
    QTimer m_returning;
    QVariantAnimation m_appearance;
    /// Since when it has not been there.
    QElapsedTimer m_hidden;
    /// There while a click elsewhere has to close it. Not every one takes the focus away: one on the bare desktop need
    /// not.
    std::unique_ptr<PointerWatch> m_clicks;
    bool m_pressedElsewhere = false;
};

} // namespace lapsa
