// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace lapsa {

/// Lines of a symbol go with the weight of the text beside it.
enum class SymbolWeight
{
    Medium,
    Semibold,
};

/// One of the drawn symbols, as it is to be shown.
struct SymbolLook
{
    /// The file's name without its ending, for example "lock.open".
    QString name;
    /// The size of the text that it goes with, in logical pixels; the drawing is about as high as a capital with its
    /// line.
    double size = 13;
    SymbolWeight weight = SymbolWeight::Medium;
    QColor color;

    friend bool operator==(const SymbolLook&, const SymbolLook&) = default;
};

/// The edge of the square picture of a symbol of that text size, in logical pixels.
[[nodiscard]] int symbolExtent(double size);

/// The tinted picture for a device pixel ratio, drawn once and kept. A symbol that does not exist is a programming
/// error.
[[nodiscard]] QPixmap symbolPixmap(const SymbolLook& look, double devicePixelRatio);

/// The same as an icon that is crisp at any scale.
[[nodiscard]] QIcon symbolIcon(const SymbolLook& look);

} // namespace lapsa
