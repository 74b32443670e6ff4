// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Sheet.h"

#include "Material.h"
#include "Motion.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace lapsa {

namespace {

constexpr double dimLight = 0.28;
constexpr double dimDark = 0.50;
constexpr int travel = 10;
constexpr int cardRadius = 14;
constexpr int margin = 12;
/// The soft shadow under the card: this many outlines, each fainter than the one inside it.
constexpr int shadowReach = 24;
constexpr int shadowDrop = 6;
constexpr double shadowOpacity = 0.008;

} // namespace

Sheet::Sheet(QWidget& parent, QWidget* content)
    : QWidget(&parent)
    , m_content(content)
{
    content->setParent(this);
    setFocusPolicy(Qt::NoFocus);
    parent.installEventFilter(this);
    m_progress.setStartValue(0.0);
    m_progress.setEndValue(0.0);
    connect(&m_progress, &QVariantAnimation::valueChanged, this, &Sheet::place);
    connect(&m_progress, &QVariantAnimation::finished, this, [this] {
        m_content->setGraphicsEffect(nullptr);
        if (m_leaving) {
            deleteLater();
        }
    });
    place();
    show();
    raise();
    motion::moveTo(m_progress, 1, motion::sheetDuration);
}

void Sheet::dismiss()
{
    if (m_leaving) {
        return;
    }
    m_leaving = true;
    setAttribute(Qt::WA_TransparentForMouseEvents);
    emit dismissed();
    motion::moveTo(m_progress, 0, motion::sheetDuration);
    if (m_progress.state() == QAbstractAnimation::Stopped) {
        hide();
    }
}

bool Sheet::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parent() && event->type() == QEvent::Resize) {
        place();
    }
    return QWidget::eventFilter(watched, event);
}

bool Sheet::focusNextPrevChild(bool next)
{
    QList<QWidget*> stops;
    for (QWidget* widget = nextInFocusChain(); widget != this; widget = widget->nextInFocusChain()) {
        if (isAncestorOf(widget) && widget->isVisible() && widget->isEnabled() &&
            (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr) {
            stops.push_back(widget);
        }
    }
    if (stops.isEmpty()) {
        return true;
    }
    const qsizetype current = stops.indexOf(QApplication::focusWidget());
    const qsizetype following = (current + (next ? 1 : -1) + stops.size()) % stops.size();
    stops[current < 0 ? 0 : following]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void Sheet::paintEvent(QPaintEvent*)
{
    const double progress = m_progress.currentValue().toDouble();
    const double dim = (schemeOf(palette()) == ColorScheme::Dark ? dimDark : dimLight) * progress;
    const double corner = window()->testAttribute(Qt::WA_TranslucentBackground) ? material::panelRadius : 0;
    QPainter painter(this);
    material::paintShape(painter, rect(), corner, withOpacity(Qt::black, dim));

    painter.setOpacity(progress);
    const QRectF card = m_content->geometry();
    for (int ring = shadowReach; ring > 0; --ring) {
        const QRectF outline = card.adjusted(-ring, -ring + shadowDrop, ring, ring + shadowDrop);
        material::paintShape(painter, outline, cardRadius + ring, withOpacity(Qt::black, shadowOpacity));
    }
    material::paintSurface(painter, card, cardRadius, palette());
}

void Sheet::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        dismiss();
    }
    event->accept(); // the covered widgets get no keys
}

void Sheet::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

void Sheet::wheelEvent(QWheelEvent* event)
{
    event->accept();
}

void Sheet::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
}

void Sheet::place()
{
    setGeometry(parentWidget()->rect());
    const QSize hint = m_content->sizeHint();
    const QSize size(std::min(hint.width(), width() - 2 * margin), std::min(hint.height(), height() - 2 * margin));
    const double progress = m_progress.currentValue().toDouble();
    const int rise = static_cast<int>(travel * (1 - progress));
    m_content->setGeometry((width() - size.width()) / 2, (height() - size.height()) / 2 + rise, size.width(),
                           size.height());
    if (motion::allowed() && progress < 1) {
        auto* effect = qobject_cast<QGraphicsOpacityEffect*>(m_content->graphicsEffect());
        if (effect == nullptr) {
            effect = new QGraphicsOpacityEffect(m_content);
            m_content->setGraphicsEffect(effect);
        }
        effect->setOpacity(progress);
    }
    update();
}

} // namespace lapsa
