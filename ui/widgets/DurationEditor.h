// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Binding.h"

#include <QWidget>

#include <array>
#include <cstdint>

class QBoxLayout;

namespace lapsa {

class Stepper;
class TextLabel;

/// A number of minutes as days, hours and minutes.
struct DurationFields
{
    std::int64_t days = 0;
    std::int64_t hours = 0;
    std::int64_t minutes = 0;

    friend bool operator==(const DurationFields&, const DurationFields&) = default;
};

/// Edits a number of minutes as days, hours and minutes. The caller owns the number; the editor keeps no copy.
class DurationEditor final : public QWidget
{
    Q_OBJECT

public:
    /// The lowest and highest total that is shown or written. If they are swapped, `minTotalMinutes` wins.
    struct Bounds
    {
        std::int64_t minTotalMinutes = 1;
        std::int64_t maxTotalMinutes = 525600;
    };

    DurationEditor(Binding<std::int64_t> totalMinutes, const Bounds& bounds, QWidget* parent = nullptr);

    [[nodiscard]] static std::int64_t clampedTotal(std::int64_t total, const Bounds& bounds);
    [[nodiscard]] static DurationFields fieldsOf(std::int64_t total, const Bounds& bounds);
    /// The total written for three fields. An overflow is a programming error and ends the process.
    [[nodiscard]] static std::int64_t totalOf(const DurationFields& fields, const Bounds& bounds);

    /// Spreads the columns over the whole width, with one width for all values.
    void spread();
    /// Draws the editor fainter because another setting applies at the moment. It can still be used.
    void setDimmed(bool dimmed);
    /// The vertical centre of the steppers' line, in this widget's coordinates.
    [[nodiscard]] int lineCentre() const;

    /// Shows the current number. A number outside the bounds is shown clamped, but not written back.
    void refresh();

protected:
    bool event(QEvent* event) override;

private:
    using Field = std::int64_t DurationFields::*;

    struct Column
    {
        Field field = nullptr;
        QString title;
        QString mark;
        std::int64_t highest = 0;
        QBoxLayout* line = nullptr;
        TextLabel* value = nullptr;
        Stepper* stepper = nullptr;
    };

    [[nodiscard]] QWidget* makeColumn(Column& column);
    void arrange();
    void writeUnit(Field field, std::int64_t value);

    Binding<std::int64_t> m_totalMinutes;
    Bounds m_bounds;
    std::array<Column, 3> m_columns;
    bool m_spread = false;
};

} // namespace lapsa
