// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace lapsa {

/// A symbol's line width matches the weight of the text beside it.
enum class SymbolWeight
{
    Medium,
    Semibold,
};

/// A symbol with its size, weight and colour.
struct SymbolLook
{
    /// The file name without its extension, for example "lock.open".
    QString name;
    /// The size of the accompanying text, in logical pixels; the drawing is about as high as a line of capitals.
    double size = 13;
    SymbolWeight weight = SymbolWeight::Medium;
    QColor color;

    friend bool operator==(const SymbolLook&, const SymbolLook&) = default;
};

/// The edge length of the square picture for a text size, both in logical pixels.
[[nodiscard]] int symbolExtent(double size);

/// The tinted picture for a device pixel ratio, drawn once and cached. A missing symbol is a programming error.
[[nodiscard]] QPixmap symbolPixmap(const SymbolLook& look, double devicePixelRatio);

/// The same as an icon that is crisp at any scale.
[[nodiscard]] QIcon symbolIcon(const SymbolLook& look);

} // namespace lapsa
