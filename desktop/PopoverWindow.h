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

/// A frameless window that stays on top, with rounded corners and a soft shadow if the desktop can show them, else
/// square with a hairline. Closing it only hides it.
class PopoverWindow final : public QWidget
{
    Q_OBJECT

public:
    enum class Behavior
    {
        /// Closes only when told to.
        ApplicationDefined,
        /// Also closes when the user turns to something else, or presses Escape.
        Transient,
    };

    enum class CloseReason
    {
        Asked,
        FocusLost,
    };

    /// What the window needs from the desktop. Both outlive it.
    struct Environment
    {
        WindowSystem& windowSystem;
        PointerMonitor& pointer;
    };

    /// Takes ownership of `content`, which determines the popover's size and background.
    PopoverWindow(const Environment& environment, QWidget* content);
    ~PopoverWindow() override;

    [[nodiscard]] QWidget& content() const { return *m_content; }

    [[nodiscard]] Behavior behavior() const { return m_behavior; }

    void setBehavior(Behavior behavior) { m_behavior = behavior; }

    /// Appears with its content at that place inside the work area, or moves there if it is already shown.
    void present(const PopoverPlacement& placement, const QRect& workArea);
    /// While it is shown; changes neither the focus nor the order of windows.
    void moveTo(const PopoverPlacement& placement, const QRect& workArea);

    /// Rounded with a shadow or square without one, as material::translucencyAvailable() says now, also while shown.
    void adaptToCompositing();

    /// Where to place a window whose preferred frame is `frame`: beside the popover if that would cover it.
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
    void prepareNativeWindow();
    void layOut();
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
    /// Its frame without the shadow, and the available area.
    PopoverPlacement m_placement;
    QRect m_workArea;
    Behavior m_behavior = Behavior::ApplicationDefined;
    CloseReason m_closeReason = CloseReason::Asked;
    bool m_hadFocus = false;
    QTimer m_leaving;
    /// Runs while the focus of a closed dialog may still be returning.
    QTimer m_returning;
    QVariantAnimation m_appearance;
    /// Since when it has been hidden.
    QElapsedTimer m_hidden;
    /// Set while a click elsewhere must close it. Not every such click takes the focus away, for example on the bare
    /// desktop.
    std::unique_ptr<PointerWatch> m_clicks;
    bool m_pressedElsewhere = false;
};

} // namespace lapsa
