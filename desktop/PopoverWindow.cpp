// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PopoverWindow.h"

#include "Material.h"
#include "Motion.h"
#include "ThemePalette.h"
#include "X11InputMonitor.h"

#include <QApplication>
#include <QChildEvent>
#include <QCloseEvent>
#include <QCursor>
#include <QDialog>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace std::chrono_literals;

namespace {

constexpr int shadowExtent = 24;
constexpr double shadowStepOpacity = 0.0085;
constexpr int travel = 6;
/// How long a window manager may take to notice that a window has gone, in milliseconds.
constexpr qint64 windowManagerPatience = 500;
/// How long the focus may take to come back from a closed dialog.
constexpr auto returnPatience = 300ms;

/// Not over a window of this program: a click on one shows in the focus.
bool pointerIsElsewhere()
{
    return QApplication::topLevelAt(QCursor::pos()) == nullptr;
}

/// None towards the icon: it would take the icon's clicks.
QMargins shadowFor(PopoverPlacement::Side side)
{
    using enum PopoverPlacement::Side;
    const auto unless = [side](PopoverPlacement::Side iconSide) { return side == iconSide ? 0 : shadowExtent; };
    return {unless(RightOfIcon), unless(BelowIcon), unless(LeftOfIcon), unless(AboveIcon)};
}

/// Where it comes from, seen from its place.
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

PopoverWindow::PopoverWindow(QWidget* content)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
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
        adaptToDesktop();
    }
    moveTo(placement, workArea);
    if (comesUp) {
        startAnimation(placement.side);
    }
    show();
    raise();
    activateWindow();
    watchClicks();
}

bool PopoverWindow::eventFilter(QObject* watched, QEvent* event)
{
    // The focus that a closed dialog had is nobody's then, and nobody is told.
    if (event->type() == QEvent::Hide && qobject_cast<QDialog*>(watched) != nullptr && m_hadFocus) {
        m_returning.start(returnPatience);
        m_leaving.start(0ms);
    }
    return QWidget::eventFilter(watched, event);
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
        return; // the content covers all of it
    }
    QPainter painter(this);
    const QRectF ground = m_content->geometry();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    // The further out, the later it begins: it leaves the icon's side softly, where there is no room for it.
    const bool fromTop = ground.top() <= 0;
    for (int ring = shadowExtent; ring > 0; --ring) {
        const QRectF outline = ground.adjusted(-ring, fromTop ? ring : -ring, ring, fromTop ? ring : -ring);
        material::paintShape(painter, outline, material::panelRadius + ring, withOpacity(Qt::black, shadowStepOpacity));
    }
}

void PopoverWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && m_behavior == Behavior::Transient) {
        hide();
        return;
    }
    QWidget::keyPressEvent(event);
}

/// Closed for good, the native window would be thrown away, and the next opening would wait for a new one.
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
        m_clicks.release()->deleteLater(); // it may be what has closed the window
    }
    if (!event->spontaneous()) {
        emit didClose(std::exchange(m_closeReason, CloseReason::Asked));
    }
}

void PopoverWindow::adaptToDesktop()
{
    // A compositing manager may have come or gone since the last time: it has to be made for the one or the other.
    const bool translucent = material::translucencyAvailable();
    // A window manager that has not yet noticed that it went would take it for one that never lost the focus.
    const bool tooEarly = m_hidden.isValid() && !m_hidden.hasExpired(windowManagerPatience);
    if (testAttribute(Qt::WA_TranslucentBackground) != translucent || tooEarly) {
        destroy();
        setAttribute(Qt::WA_TranslucentBackground, translucent);
    }
}

void PopoverWindow::moveTo(const PopoverPlacement& placement, const QRect& workArea)
{
    QMargins shadow;
    if (testAttribute(Qt::WA_TranslucentBackground)) {
        shadow = boundedBy(shadowFor(placement.side), placement.rect, workArea);
    }
    const QRect window = placement.rect.marginsAdded(shadow);
    setFixedSize(window.size());
    move(window.topLeft());
    m_content->setGeometry(QRect(QPoint(shadow.left(), shadow.top()), placement.rect.size()));
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
        update(); // on X11 a new opacity is seen with the next painting
    });
    setWindowOpacity(0);
    m_appearance.start();
}

void PopoverWindow::focusMovedTo(QWindow* window)
{
    if (!isVisible()) {
        return;
    }
    if (owns(window)) {
        m_hadFocus = true;
        m_leaving.stop();
    } else if (m_hadFocus) {
        m_leaving.start(0ms);
    }
}

void PopoverWindow::closeIfLeft()
{
    if (!isVisible() || owns(QGuiApplication::focusWindow()) || showsOwnDialog()) {
        return;
    }
    if (m_returning.isActive()) {
        // A dialog was closed: the window manager need not know where its focus came from, and may give it away.
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
        m_clicks = std::make_unique<X11InputMonitor>(X11InputMonitor::Kind::Buttons);
        connect(m_clicks.get(), &X11InputMonitor::pressed, this, &PopoverWindow::buttonPressed);
        connect(m_clicks.get(), &X11InputMonitor::released, this, &PopoverWindow::buttonReleased);
    }
}

void PopoverWindow::buttonPressed()
{
    // The release of the click that opens the panel can be heard after the bar has told of it.
    m_pressedElsewhere = isVisible() && pointerIsElsewhere();
}

/// A click is over with its release, as a bar sees it: closed at the press, a slow click on the icon would find the
/// panel closed for long, and open it again. What is dragged out of the panel or onto it is no click elsewhere.
void PopoverWindow::buttonReleased(quint32 button)
{
    if (!X11InputMonitor::isWheel(button) && isVisible() && m_behavior == Behavior::Transient && !showsOwnDialog() &&
        m_pressedElsewhere && pointerIsElsewhere()) {
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
