// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationEditor.h"

#include "Localized.h"
#include "Stepper.h"
#include "TextLabel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr std::int64_t minutesPerHour = 60;
constexpr std::int64_t minutesPerDay = 1440;
constexpr std::int64_t lastHour = 23;
constexpr std::int64_t lastMinute = 59;
constexpr int columnSpacing = 8;
constexpr int lineSpacing = 3;
constexpr int valueSpacing = 3;
/// For spread columns, which are already apart.
constexpr int spreadValueSpacing = 8;
constexpr int columnMinimumWidth = 82;
/// Space after a stepper, so that it visibly belongs to the value before it, not to the next.
constexpr int columnEnd = 16;
constexpr int valueMinimumWidth = 36;
/// Above this text scale, the steppers are below their values, so that the columns stay narrow.
constexpr double stackedScale = 1.3;

} // namespace

DurationEditor::DurationEditor(Binding<std::int64_t> totalMinutes, const Bounds& bounds, QWidget* parent)
    : QWidget(parent)
    , m_totalMinutes(std::move(totalMinutes))
    , m_bounds(bounds)
    , m_columns{Column{.field = &DurationFields::days,
                       .title = Localized::durationDays(),
                       .mark = Localized::daysShort(),
                       .highest = std::max<std::int64_t>(bounds.maxTotalMinutes / minutesPerDay, 0)},
                Column{.field = &DurationFields::hours,
                       .title = Localized::durationHours(),
                       .mark = Localized::hoursShort(),
                       .highest = lastHour},
                Column{.field = &DurationFields::minutes,
                       .title = Localized::durationMinutes(),
                       .mark = Localized::minutesShort(),
                       .highest = lastMinute}}
{
    auto* const columns = new QHBoxLayout(this);
    columns->setContentsMargins({});
    columns->setSpacing(columnSpacing);
    for (Column& column : m_columns) {
        columns->addWidget(makeColumn(column));
    }
    columns->addStretch();
    arrange();
    refresh();
}

std::int64_t DurationEditor::clampedTotal(std::int64_t total, const Bounds& bounds)
{
    return std::max(bounds.minTotalMinutes, std::min(total, bounds.maxTotalMinutes));
}

DurationFields DurationEditor::fieldsOf(std::int64_t total, const Bounds& bounds)
{
    const std::int64_t clamped = clampedTotal(total, bounds);
    return {.days = clamped / minutesPerDay,
            .hours = clamped % minutesPerDay / minutesPerHour,
            .minutes = clamped % minutesPerHour};
}

std::int64_t DurationEditor::totalOf(const DurationFields& fields, const Bounds& bounds)
{
    const std::int64_t rest = std::clamp<std::int64_t>(fields.hours, 0, lastHour) * minutesPerHour +
                              std::clamp<std::int64_t>(fields.minutes, 0, lastMinute);
    std::int64_t total = 0;
    if (__builtin_mul_overflow(std::max<std::int64_t>(fields.days, 0), minutesPerDay, &total) ||
        __builtin_add_overflow(total, rest, &total)) {
        qFatal("a duration does not fit into 64 bits");
    }
    return clampedTotal(total, bounds);
}

void DurationEditor::refresh()
{
    const DurationFields fields = fieldsOf(m_totalMinutes.read(), m_bounds);
    for (const Column& column : m_columns) {
        const std::int64_t value = fields.*column.field;
        const QSignalBlocker blocker(column.stepper);
        column.value->setText(u"%1 %2"_s.arg(value).arg(column.mark));
        column.stepper->setValue(static_cast<int>(value));
    }
}

void DurationEditor::spread()
{
    m_spread = true;
    auto* const columns = static_cast<QHBoxLayout*>(layout());
    delete columns->takeAt(columns->count() - 1);
    columns->insertStretch(2);
    columns->insertStretch(1);
    arrange();
}

void DurationEditor::setDimmed(bool dimmed)
{
    for (const Column& column : m_columns) {
        column.value->setForegroundRole(paletteRole(dimmed ? ColorRole::Secondary : ColorRole::Primary));
        column.stepper->setDimmed(dimmed);
    }
}

int DurationEditor::lineCentre() const
{
    // The steppers are on the lowest line.
    return sizeHint().height() - m_columns.front().stepper->sizeHint().height() / 2;
}

bool DurationEditor::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange) {
        arrange();
    }
    return QWidget::event(event);
}

QWidget* DurationEditor::makeColumn(Column& column)
{
    auto* const widget = new QWidget(this);
    widget->setMinimumWidth(columnMinimumWidth);
    auto* const lines = new QVBoxLayout(widget);
    lines->setContentsMargins({});
    lines->setSpacing(lineSpacing);
    lines->addWidget(new TextLabel(column.title, secondCaptionText, ColorRole::Secondary, widget));

    column.value = new TextLabel({}, calloutText, ColorRole::Primary, widget);
    column.stepper = new Stepper(column.title, widget);
    column.stepper->setRange(0, static_cast<int>(column.highest));
    connect(column.stepper, &QSpinBox::valueChanged, this,
            [this, field = column.field](int value) { writeUnit(field, value); });

    column.line = new QBoxLayout(QBoxLayout::LeftToRight);
    column.line->addWidget(column.value);
    column.line->addWidget(column.stepper);
    column.line->addStretch();
    lines->addLayout(column.line);
    return widget;
}

/// Lays everything out for the current text size.
void DurationEditor::arrange()
{
    const bool stacked = textScale() > stackedScale;
    // As wide as its highest value, so that the stepper beside it does not move.
    const auto widthOf = [font = fontFor(calloutText)](const Column& column) {
        const double widest = tabularText::width(u"%1 %2"_s.arg(column.highest).arg(column.mark), font);
        return std::max(valueMinimumWidth, static_cast<int>(std::ceil(widest)));
    };
    const int widestOfAll = widthOf(*std::ranges::max_element(m_columns, {}, widthOf));
    for (const Column& column : m_columns) {
        const bool last = column.field == &DurationFields::minutes;
        column.value->setTabular(m_spread ? widestOfAll : widthOf(column));
        column.line->setSpacing(m_spread ? spreadValueSpacing : valueSpacing);
        column.line->setContentsMargins(0, 0, last || m_spread ? 0 : columnEnd, 0);
        column.line->setDirection(stacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
        column.line->setAlignment(column.value, stacked ? Qt::AlignLeading : Qt::AlignVCenter);
        column.line->setAlignment(column.stepper, stacked ? Qt::AlignLeading : Qt::AlignVCenter);
    }
}

void DurationEditor::writeUnit(Field field, std::int64_t value)
{
    DurationFields fields = fieldsOf(m_totalMinutes.read(), m_bounds);
    fields.*field = value;
    m_totalMinutes.write(totalOf(fields, m_bounds));
    refresh();
}

} // namespace lapsa
