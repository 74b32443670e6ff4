// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropZone.h"

#include "DurationFormatter.h"
#include "FocusRing.h"
#include "Localized.h"
#include "Material.h"
#include "Painting.h"
#include "TextLabel.h"
#include "ThemePalette.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int leastHeight = 126;
constexpr int radius = 18;
constexpr double symbolSize = 34;
constexpr int verticalPadding = 16;
constexpr int horizontalPadding = 24;
constexpr int symbolSpacing = 6;
constexpr int captionSpacing = 5;
constexpr double borderWidth = 1.5;
constexpr double draggedBorderWidth = 2;
/// In units of the border's width.
constexpr double dashLength = 4;
constexpr double dashGap = 3;
constexpr double borderOpacity = 0.55;
constexpr double hoverTint = 0.05;
constexpr double draggedTint = 0.12;

} // namespace

DropZone::DropZone(QWidget* parent)
    : HoverButton(parent)
    , m_title(new TextLabel(Localized::dropFiles(), dropZoneText, ColorRole::Primary, this))
    , m_caption(new TextLabel({}, captionText, ColorRole::Secondary, this))
{
    setAcceptDrops(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    setMinimumHeight(leastHeight);
    setAccessibleName(Localized::dropFiles());
    setFocusRadius(*this, radius);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(horizontalPadding, verticalPadding + symbolExtent(symbolSize) + symbolSpacing,
                               horizontalPadding, verticalPadding);
    column->setSpacing(captionSpacing);
    for (TextLabel* const label : {m_title, m_caption}) {
        label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
        column->addWidget(label);
    }
}

void DropZone::setDefaultExpiry(std::int64_t minutes)
{
    const QString text = Localized::defaultExpiry() + u": "_s + DurationFormatter::compact(minutes);
    m_caption->setText(text);
    setAccessibleDescription(text);
}

DropZone::Look DropZone::lookFor(bool draggedOver, double strength, const QPalette& palette)
{
    const QColor accent = themeColor(ColorRole::Accent, palette);
    const QColor tint = withOpacity(accent, draggedOver ? draggedTint : hoverTint * strength);
    const QColor line =
        draggedOver ? accent
                    : mixed(withOpacity(themeColor(ColorRole::Secondary, palette), borderOpacity), accent, strength);
    QPen border(line, draggedOver ? draggedBorderWidth : borderWidth);
    border.setCapStyle(Qt::FlatCap);
    border.setDashPattern({dashLength, dashGap});
    return {.fill = blended(tint, themeColor(ColorRole::Surface, palette)), .border = border};
}

QSize DropZone::sizeHint() const
{
    const int width = layout()->sizeHint().width();
    return {width, heightForWidth(width)};
}

int DropZone::heightForWidth(int width) const
{
    return std::max(leastHeight, layout()->totalHeightForWidth(width));
}

void DropZone::paintEvent(QPaintEvent*)
{
    const Look look = lookFor(m_draggedOver, isDown() ? 1 : hoverProgress(), palette());
    QPainter painter(this);
    material::paintShape(painter, rect(), radius, look.fill);
    material::paintBorder(painter, rect(), radius, look.border);
    const int extent = symbolExtent(symbolSize);
    const QRect symbol((width() - extent) / 2, m_title->y() - symbolSpacing - extent, extent, extent);
    painting::drawSymbol(
        painter, symbol,
        {u"arrow.down.doc"_s, symbolSize, SymbolWeight::Medium, themeColor(ColorRole::Accent, palette())});
}

void DropZone::dragEnterEvent(QDragEnterEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    setDraggedOver(true);
}

void DropZone::dragMoveEvent(QDragMoveEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void DropZone::dragLeaveEvent(QDragLeaveEvent*)
{
    setDraggedOver(false);
}

void DropZone::dropEvent(QDropEvent* event)
{
    setDraggedOver(false);
    // Always accepted, kept on purpose: a drop without files adds nothing, and its source need not know.
    event->setDropAction(Qt::CopyAction);
    event->accept();
    QList<QUrl> urls = event->mimeData()->urls();
    urls.removeIf([](const QUrl& url) { return !url.isLocalFile(); });
    emit filesDropped(urls);
}

void DropZone::setDraggedOver(bool draggedOver)
{
    if (std::exchange(m_draggedOver, draggedOver) != draggedOver) {
        update();
    }
}

} // namespace lapsa
