// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WorkBar.h"

#include "Material.h"
#include "Motion.h"
#include "ThemePalette.h"

#include <QPainter>

#include <algorithm>
#include <chrono>

namespace lapsa {

namespace {

constexpr double radius = WorkBar::thickness / 2.0;
constexpr double trackOpacity = 0.14;
/// Of a bar that is lit as a whole because nothing may move: it must not look like work that is done.
constexpr double restOpacity = 0.4;
/// The part of the bar that the drifting piece takes.
constexpr double pieceLength = 0.24;
/// From one side to the other and back: slow enough to be overlooked beside the text.
constexpr std::chrono::milliseconds driftDuration{4200};

} // namespace

WorkBar::WorkBar(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedHeight(thickness);
    hide();
    m_drift.setKeyValues({{0, 0.0}, {0.5, 1.0}, {1, 0.0}});
    m_drift.setEasingCurve(QEasingCurve::Linear);
    m_drift.setDuration(static_cast<int>(driftDuration.count()));
    m_drift.setLoopCount(-1);
    connect(&m_drift, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

WorkBar::Look WorkBar::lookFor(const Position& position, const QWidget& bar)
{
    const QColor accent = themeColor(ColorRole::Accent, bar.palette());
    const QRectF whole(bar.rect());
    Look look{.track = withOpacity(accent, trackOpacity), .fill = accent, .filled = whole};
    if (position.progress) {
        // Never shorter than it is high, so that its ends stay round.
        look.filled.setWidth(*position.progress > 0 ? std::max(whole.width() * *position.progress, whole.height()) : 0);
    } else if (position.drift) {
        look.filled.setWidth(whole.width() * pieceLength);
        look.filled.moveLeft((whole.width() - look.filled.width()) *
                             QEasingCurve(QEasingCurve::InOutSine).valueForProgress(*position.drift));
    } else {
        look.fill = withOpacity(accent, restOpacity);
    }
    if (bar.isRightToLeft()) {
        look.filled.moveRight(whole.width() - look.filled.left());
    }
    return look;
}

void WorkBar::setProgress(std::optional<double> progress)
{
    if (progress != m_progress) {
        m_progress = progress;
        driftIfNeeded();
        update();
    }
}

void WorkBar::paintEvent(QPaintEvent*)
{
    const Look look = lookFor(position(), *this);
    QPainter painter(this);
    material::paintShape(painter, rect(), radius, look.track);
    material::paintShape(painter, look.filled, radius, look.fill);
}

void WorkBar::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    driftIfNeeded();
}

void WorkBar::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_drift.stop();
}

void WorkBar::driftIfNeeded()
{
    if (m_progress || !isVisible() || !motion::allowed()) {
        m_drift.stop();
    } else if (!drifts()) {
        m_drift.start();
    }
}

WorkBar::Position WorkBar::position() const
{
    return {.progress = m_progress,
            .drift = drifts() ? std::optional(m_drift.currentValue().toDouble()) : std::nullopt};
}

} // namespace lapsa
