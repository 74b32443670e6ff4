// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryDelegate.h"

#include "Localized.h"
#include "Material.h"
#include "Painting.h"
#include "RecoveryModel.h"
#include "RowIconButton.h"
#include "RowLook.h"
#include "TextStyle.h"
#include "ThemePalette.h"
#include "WorkTexts.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

using Button = RecoveryRowLayout::Button;

constexpr int buttonRadius = 10;
constexpr double symbolSize = 13;
constexpr int ringWidth = 2;
constexpr int barThickness = 3;
/// Keeps the bar off the row's hairline.
constexpr int barInset = 1;
constexpr double barTrackOpacity = 0.14;
/// Of a bar whose end is not known.
constexpr double barRestOpacity = 0.4;
/// The factor by which the ground is stronger while the button is pressed.
constexpr double pressedGain = 1.4;

const RecoveryModel& modelOf(const QModelIndex& index)
{
    return *qobject_cast<const RecoveryModel*>(index.model());
}

struct Line
{
    TextStyle style;
    ColorRole role = ColorRole::Primary;
    Qt::TextElideMode elide = Qt::ElideMiddle;
    bool atEnd = false;
};

/// One line, elided; digits of equal width where it fits.
void paintLine(QPainter& painter, const QStyleOptionViewItem& option, const QRect& place, const QString& text,
               const Line& line)
{
    const QFont font = fontFor(line.style);
    painter.setFont(font);
    painter.setPen(themeColor(line.role, option.palette));
    const double width = tabularText::width(text, font);
    const bool leftToRight = option.direction == Qt::LeftToRight;
    if (line.atEnd && !text.isRightToLeft() && width <= place.width()) {
        const double left = leftToRight ? place.right() + 1 - width : place.left();
        tabularText::draw(painter, QPointF(left, place.top() + QFontMetricsF(font).ascent()), text, font);
        return;
    }
    const QString shown = QFontMetricsF(font).elidedText(text, line.elide, place.width());
    const Qt::Alignment side = leftToRight != line.atEnd ? Qt::AlignLeft : Qt::AlignRight;
    painter.drawText(place, static_cast<int>(side | Qt::AlignVCenter) | Qt::TextSingleLine, shown);
}

void paintBar(QPainter& painter, const QStyleOptionViewItem& option, const QRect& row, const ItemWork& work)
{
    const QColor accent = themeColor(ColorRole::Accent, option.palette);
    const std::optional<double> progress = workTexts::progressOf(work);
    const QRectF track(row.left() + rowLook::cornerRadius, row.bottom() + 1 - barThickness - barInset,
                       row.width() - 2 * rowLook::cornerRadius, barThickness);
    QRectF filled = track;
    if (progress) {
        // Never shorter than it is high, so that its ends stay round.
        filled.setWidth(*progress > 0 ? std::max(track.width() * *progress, track.height()) : 0);
    }
    if (option.direction == Qt::RightToLeft) {
        filled.moveRight(track.right());
    }
    material::paintShape(painter, track, barThickness / 2.0, withOpacity(accent, barTrackOpacity));
    material::paintShape(painter, filled, barThickness / 2.0, progress ? accent : withOpacity(accent, barRestOpacity));
}

} // namespace

RecoveryDelegate::RecoveryDelegate(QObject* parent)
    : QStyledItemDelegate(parent)
{}

QString RecoveryDelegate::putBackText()
{
    return Localized::text(u"Put back"_s, u"Ripristina"_s);
}

RecoveryRowLayout RecoveryDelegate::layoutOf(const QModelIndex& index, const QRect& item, Qt::LayoutDirection direction)
{
    const RecoveryModel& model = modelOf(index);
    const int row = index.row();
    return RecoveryRowLayout::of(item,
                                 {.size = model.sizeAt(row),
                                  .state = model.stateAt(row),
                                  .putBack = putBackText(),
                                  .underWay = model.isUnderWay(row),
                                  .stoppable = model.workAt(row).has_value()},
                                 direction);
}

QSize RecoveryDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const
{
    return {1, RecoveryRowLayout::itemHeight()};
}

bool RecoveryDelegate::isTouched(const QModelIndex& index, Button button) const
{
    return m_touched.button == button && m_touched.index == index;
}

void RecoveryDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const RecoveryRowLayout layout = layoutOf(index, option.rect, option.direction);
    const std::optional<ItemWork> work = modelOf(index).workAt(index.row());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (work && work->kind == ItemWork::Kind::WaitingForDisk) {
        painter->setOpacity(rowLook::waitingOpacity);
    }
    rowLook::paintGround(*painter, layout.row, option.palette, 0);
    if (option.state.testFlag(QStyle::State_Selected)) {
        rowLook::paintSelection(*painter, layout.row, option.palette);
    }
    modelOf(index).iconAt(index.row()).paint(painter, layout.icon);
    paintTexts(*painter, option, index, layout);
    if (work && work->kind != ItemWork::Kind::WaitingForDisk) {
        paintBar(*painter, option, layout.row, *work);
    }
    painter->setOpacity(1);
    paintButtons(*painter, option, index, layout);
    if (m_ringShown && option.state.testFlag(QStyle::State_HasFocus)) {
        material::paintBorder(*painter, option.rect, rowLook::cornerRadius + RecoveryRowLayout::around,
                              QPen(themeColor(ColorRole::Accent, option.palette), ringWidth));
    }
    painter->restore();
}

void RecoveryDelegate::paintTexts(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                                  const RecoveryRowLayout& layout) const
{
    const RecoveryModel& model = modelOf(index);
    const int row = index.row();
    paintLine(painter, option, layout.name, index.data().toString(), {.style = headlineText});
    paintLine(painter, option, layout.size, model.sizeAt(row),
              {.style = calloutText, .role = ColorRole::Secondary, .atEnd = true});
    paintLine(painter, option, layout.origin, model.originAt(row),
              {.style = calloutText, .role = ColorRole::Secondary});
    paintLine(
        painter, option, layout.state, model.stateAt(row),
        {.style = calloutText, .role = ColorRole::Secondary, .elide = Qt::ElideRight, .atEnd = !rowLook::stacked()});
}

void RecoveryDelegate::paintButtons(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                                    const RecoveryRowLayout& layout) const
{
    const auto ground = [&](Button button, bool danger) {
        const RowIconButton::Look look = RowIconButton::lookFor(danger, isTouched(index, button), option.palette);
        const bool pressed = isTouched(index, button) && m_touched.pressed;
        material::paintShape(painter, layout.rectOf(button), buttonRadius,
                             pressed ? withOpacity(look.background, pressedGain) : look.background);
        return look;
    };
    if (!layout.putBack.isNull()) {
        ground(Button::PutBack, false);
        painter.setFont(fontFor({.size = calloutText.size, .weight = QFont::DemiBold}));
        painter.setPen(themeColor(ColorRole::Accent, option.palette));
        painter.drawText(layout.putBack, static_cast<int>(Qt::AlignCenter) | Qt::TextSingleLine, putBackText());
    }
    if (!layout.remove.isNull()) {
        const RowIconButton::Look look = ground(Button::Delete, true);
        painting::drawSymbol(painter, layout.remove, {u"trash"_s, symbolSize, SymbolWeight::Semibold, look.foreground});
    }
    if (!layout.stop.isNull()) {
        const RowIconButton::Look look = ground(Button::Stop, false);
        painting::drawSymbol(painter, layout.stop, {u"xmark"_s, symbolSize, SymbolWeight::Semibold, look.foreground});
    }
}

} // namespace lapsa
