// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PopoverWindow.h"

#include "DropShadow.h"
#include "Material.h"
#include "Motion.h"
#include "PointerMonitor.h"
#include "ThemePalette.h"
#include "WindowSystem.h"

#include <QChildEvent>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace std::chrono_literals;

namespace {

constexpr DropShadow shadow;
constexpr int travel = 6;
/// How long a window manager may take to notice that a window has closed, in milliseconds.
constexpr qint64 windowManagerPatience = 500;

/// No shadow towards the icon: it would take the icon's clicks.
QMargins shadowFor(PopoverPlacement::Side side)
{
    using enum PopoverPlacement::Side;
    QMargins margins = shadow.margins();
    switch (side) {
    case BelowIcon:
        margins.setTop(0);
        break;
    case AboveIcon:
        margins.setBottom(0);
        break;
    case RightOfIcon:
        margins.setLeft(0);
        break;
    case LeftOfIcon:
        margins.setRight(0);
        break;
    }
    return margins;
}

/// Where the animation starts, relative to the popover's final place.
QPoint travelFrom(PopoverPlacement::Side side)
{
    switch (side) {
    case PopoverPlacement::Side::BelowIcon:
        return {0, -travel};
    case PopoverPlacement::Side::AboveIcon:
        return {0, travel};
    case PopoverPlacement::Side::RightOfIcon:
        return {-travel, 0};
    case PopoverPlacement::Side::LeftOfIcon:
        return {travel, 0};
    }
    return {};
}

QMargins boundedBy(const QMargins& wanted, const QRect& rect, const QRect& area)
{
    const auto room = [](int margin, int space) { return std::clamp(space, 0, margin); };
    return {room(wanted.left(), rect.left() - area.left()), room(wanted.top(), rect.top() - area.top()),
            room(wanted.right(), area.right() - rect.right()), room(wanted.bottom(), area.bottom() - rect.bottom())};
}

} // namespace

PopoverWindow::PopoverWindow(const Environment& environment, QWidget* content)
    // Not Qt::Tool: that is "transient for the group" and stays above all windows of the program.
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_environment(environment)
    , m_content(content)
{
    setWindowTitle(content->windowTitle());
    content->setParent(this);
    m_leaving.setSingleShot(true);
    m_returning.setSingleShot(true);
    connect(&m_leaving, &QTimer::timeout, this, &PopoverWindow::closeIfLeft);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &PopoverWindow::focusMovedTo);
}

PopoverWindow::~PopoverWindow() = default;

void PopoverWindow::present(const PopoverPlacement& placement, const QRect& workArea)
{
    m_leaving.stop();
    const bool comesUp = !isVisible();
    if (comesUp) {
        m_hadFocus = false;
        m_pressedElsewhere = false;
        prepareNativeWindow();
    }
    m_placement = placement;
    m_workArea = workArea;
    layOut();
    if (comesUp) {
        startAnimation(placement.side);
        m_environment.windowSystem.keepOutOfTaskbars(*windowHandle());
    }
    standBelow(nullptr);
    show();
    raise();
    activateWindow();
    watchClicks();
}

void PopoverWindow::moveTo(const PopoverPlacement& placement, const QRect& workArea)
{
    if (m_appearance.state() == QAbstractAnimation::Running) {
        m_appearance.stop(); // it leads to the earlier place
        setWindowOpacity(1);
    }
    m_placement = placement;
    m_workArea = workArea;
    layOut();
}

QRect PopoverWindow::beside(const QRect& frame) const
{
    return besidePopover(frame, m_placement.rect, m_workArea);
}

void PopoverWindow::childEvent(QChildEvent* event)
{
    QWidget::childEvent(event);
    if (event->added()) {
        event->child()->installEventFilter(this);
    }
}

void PopoverWindow::paintEvent(QPaintEvent*)
{
    if (!testAttribute(Qt::WA_TranslucentBackground)) {
        return; // the content covers the whole window
    }
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    shadow.paint(painter, m_content->geometry(), material::panelRadius);
}

void PopoverWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && m_behavior == Behavior::Transient) {
        hide();
        return;
    }
    QWidget::keyPressEvent(event);
}

/// A real close would destroy the native window, and the next opening would have to wait for a new one.
void PopoverWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
    hide();
}

void PopoverWindow::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_leaving.stop();
    m_appearance.stop();
    m_hidden.start();
    if (m_clicks) {
        m_clicks.release()->deleteLater(); // it may have closed the window
    }
    if (!event->spontaneous()) {
        emit didClose(std::exchange(m_closeReason, CloseReason::Asked));
    }
}

void PopoverWindow::prepareNativeWindow()
{
    // A window manager that has not noticed the hiding yet would assume that the window still has the focus.
    if (m_hidden.isValid() && !m_hidden.hasExpired(windowManagerPatience)) {
        destroy();
    }
    if (windowHandle() == nullptr) {
        // With an alpha channel even where nothing is translucent now: compositing may begin while it is shown.
        setAttribute(Qt::WA_TranslucentBackground);
        create();
    }
    setAttribute(Qt::WA_TranslucentBackground, material::translucencyAvailable());
}

void PopoverWindow::adaptToCompositing()
{
    if (!isVisible() || testAttribute(Qt::WA_TranslucentBackground) == material::translucencyAvailable()) {
        return;
    }
    m_appearance.stop();
    setWindowOpacity(1);
    setAttribute(Qt::WA_TranslucentBackground, material::translucencyAvailable());
    layOut();
    update();
    m_content->update();
}

void PopoverWindow::layOut()
{
    const QRect& place = m_placement.rect;
    QMargins around;
    if (testAttribute(Qt::WA_TranslucentBackground)) {
        // Where the compositor decides on the place, neither the icon nor an edge of the screen is known to be near.
        around = m_environment.windowSystem.honoursPlaces() ? boundedBy(shadowFor(m_placement.side), place, m_workArea)
                                                            : shadow.margins();
    }
    const QRect window = place.marginsAdded(around);
    setFixedSize(window.size());
    move(window.topLeft());
    m_content->setFixedSize(place.size());
    m_content->setGeometry(QRect(QPoint(around.left(), around.top()), place.size()));
}

void PopoverWindow::startAnimation(PopoverPlacement::Side side)
{
    if (!motion::allowed() || !testAttribute(Qt::WA_TranslucentBackground)) {
        setWindowOpacity(1);
        return;
    }
    const QPoint place = pos();
    const QPoint from = travelFrom(side);
    m_appearance.disconnect(this);
    m_appearance.stop();
    m_appearance.setStartValue(0.0);
    m_appearance.setEndValue(1.0);
    m_appearance.setEasingCurve(motion::easing);
    m_appearance.setDuration(motion::milliseconds(motion::popoverDuration));
    connect(&m_appearance, &QVariantAnimation::valueChanged, this, [this, place, from](const QVariant& value) {
        const double progress = value.toDouble();
        setWindowOpacity(progress);
        move(place + from * (1 - progress));
        update(); // on X11 a new opacity shows only with the next paint
    });
    setWindowOpacity(0);
    m_appearance.start();
}

} // namespace lapsa
