// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>
#include <QString>

class QFontMetrics;
class QPainter;
class QPointF;

namespace lapsa {

/// A text size in logical pixels at the desktop's default text size, and a weight.
struct TextStyle
{
    int size = 13;
    QFont::Weight weight = QFont::Normal;
};

inline constexpr TextStyle panelTitleText{28, QFont::Bold};
inline constexpr TextStyle sheetTitleText{22, QFont::Bold};
inline constexpr TextStyle dropZoneText{18, QFont::DemiBold};
inline constexpr TextStyle countText{14, QFont::Bold};
inline constexpr TextStyle headlineText{13, QFont::DemiBold};
inline constexpr TextStyle bodyText{13, QFont::Normal};
inline constexpr TextStyle calloutText{12, QFont::Normal};
inline constexpr TextStyle captionText{11, QFont::Normal};
inline constexpr TextStyle secondCaptionText{10, QFont::Normal};

/// The user's text scale, from the size of the application's font; 1 for the usual default sizes of desktops.
[[nodiscard]] double textScale();

/// The desktop's user-interface font in a style, scaled by textScale(); titles grow only half as much.
[[nodiscard]] QFont fontFor(const TextStyle& style);

/// Text in which every digit is as wide as the widest one, so that a changing number does not jitter.
namespace tabularText {

[[nodiscard]] double width(const QString& text, const QFont& font);
/// Draws from `baseline`, left to right, with the painter's pen.
void draw(QPainter& painter, const QPointF& baseline, const QString& text, const QFont& font);

} // namespace tabularText

/// A name for display on one line: line breaks and other control characters become visible blanks or replacement
/// characters, and nothing in it can change the direction of the following text.
[[nodiscard]] QString singleLine(const QString& name);

/// The same for a tooltip, which would otherwise interpret HTML.
[[nodiscard]] QString plainToolTip(const QString& text);

} // namespace lapsa
