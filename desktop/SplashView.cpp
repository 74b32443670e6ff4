// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SplashView.h"

#include "DropShadow.h"
#include "Picture.h"
#include "TextStyle.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr double cornerRadius = 36;
constexpr DropShadow shadow;
constexpr QSize logoSize(180, 180);
constexpr int fallbackSpacing = 14;
constexpr TextStyle titleText{42, QFont::Normal};

QColor groundColor()
{
    return QColor::fromRgbF(0.02F, 0.03F, 0.08F);
}

} // namespace

SplashView::SplashView(const QString& pictures, QWidget* parent)
    : QWidget(parent)
    , m_pictures(pictures)
{
    setFixedSize(extent);
}

void SplashView::setTranslucent(bool translucent)
{
    const QMargins around = translucent ? shadow.margins() : QMargins();
    setAttribute(Qt::WA_TranslucentBackground, translucent);
    setContentsMargins(around);
    setFixedSize(extent.grownBy(around));
    m_rendered = {};
    update();
}

QString SplashView::defaultPictures()
{
    return u":/lapsa"_s;
}

void SplashView::paintEvent(QPaintEvent*)
{
    if (m_rendered.isNull() || m_rendered.devicePixelRatio() != devicePixelRatioF()) {
        render();
    }
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawPixmap(0, 0, m_rendered);
}

void SplashView::render()
{
    m_rendered = QPixmap((QSizeF(size()) * devicePixelRatioF()).toSize());
    m_rendered.setDevicePixelRatio(devicePixelRatioF());
    m_rendered.fill(Qt::transparent);
    QPainter painter(&m_rendered);
    painter.setRenderHint(QPainter::Antialiasing);
    if (testAttribute(Qt::WA_TranslucentBackground)) {
        shadow.paint(painter, contentsRect(), cornerRadius);
    }
    painter.translate(contentsRect().topLeft());
    paintPicture(painter);
}

void SplashView::paintPicture(QPainter& painter) const
{
    QPainterPath shape;
    // Without translucency the corners are as dark as the rest.
    const double radius = testAttribute(Qt::WA_TranslucentBackground) ? cornerRadius : 0;
    shape.addRoundedRect(QRectF(QPointF(), extent), radius, radius);
    painter.fillPath(shape, groundColor());
    QPixmap image = picture();
    if (image.isNull()) {
        paintFallback(painter);
        return;
    }
    // A brush, not a clip: its edge is smooth.
    const double ratio = devicePixelRatioF();
    image.setDevicePixelRatio(1);
    QBrush brush(
        image.scaled((QSizeF(extent) * ratio).toSize(), Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation));
    brush.setTransform(QTransform::fromScale(1 / ratio, 1 / ratio));
    painter.fillPath(shape, brush);
}

QPixmap SplashView::picture() const
{
    const QPixmap drawing = svgPicture(m_pictures + u"/LapsaSplash.svg"_s, extent, devicePixelRatioF());
    return drawing.isNull() ? QPixmap(m_pictures + u"/LapsaSplash.png"_s) : drawing;
}

void SplashView::paintFallback(QPainter& painter) const
{
    const QFont font = fontFor(titleText);
    const int titleHeight = QFontMetrics(font).height();
    const int top = (extent.height() - logoSize.height() - fallbackSpacing - titleHeight) / 2;
    const QPixmap logo = svgPicture(m_pictures + u"/LapsaLogo.svg"_s, logoSize, devicePixelRatioF());
    if (!logo.isNull()) {
        painter.drawPixmap(QPoint((extent.width() - logoSize.width()) / 2, top), logo);
    }
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(0, top + logoSize.height() + fallbackSpacing, extent.width(), titleHeight), Qt::AlignCenter,
                     u"Lapsa"_s);
}

} // namespace lapsa
