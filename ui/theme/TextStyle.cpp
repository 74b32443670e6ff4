// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TextStyle.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextDocument>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// Desktops default to 9 to 11 points; any other size was chosen by the user.
constexpr double smallestUsualPoints = 9;
constexpr double largestUsualPoints = 11;
constexpr double usualPoints = 10;
constexpr double pixelsPerPoint = 96.0 / 72.0;
/// Text counts as a title from this many pixels.
constexpr int largeText = 18;
constexpr double leastScale = 0.8;
constexpr double greatestScale = 3.0;

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

double widestDigit(const QFontMetricsF& metrics)
{
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    }
    return widest;
}

/// Calls `visit(piece, advance, width)` for each digit and each run of other characters.
template <typename Visit>
void forEachPiece(const QString& text, const QFontMetricsF& metrics, const Visit& visit)
{
    const double digitWidth = widestDigit(metrics);
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = start + 1;
        const bool digit = isDigit(text[start]);
        while (!digit && end < text.size() && !isDigit(text[end])) {
            ++end;
        }
        const QString piece = text.sliced(start, end - start);
        const double own = metrics.horizontalAdvance(piece);
        visit(piece, own, digit ? digitWidth : own);
        start = end;
    }
}

bool turnsDirection(char16_t character)
{
    return character == 0x061C || character == 0x200E || character == 0x200F ||
           (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

QChar visibleFor(QChar character)
{
    if (character == u'\n' || character == u'\r' || character == u'\t' || character == QChar::LineSeparator ||
        character == QChar::ParagraphSeparator) {
        return u' ';
    }
    const bool hidden = character.category() == QChar::Other_Control || turnsDirection(character.unicode());
    return hidden ? QChar(QChar::ReplacementCharacter) : character;
}

} // namespace

double textScale()
{
    const QFont font = QApplication::font();
    const double points = font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() / pixelsPerPoint;
    if (points >= smallestUsualPoints && points <= largestUsualPoints) {
        return 1;
    }
    return std::clamp(points / usualPoints, leastScale, greatestScale);
}

QFont fontFor(const TextStyle& style)
{
    // Large text needs to grow only half as much, and leaves the room to small text.
    const double growth = textScale() - 1;
    const double scale = 1 + (growth > 0 && style.size >= largeText ? growth / 2 : growth);
    QFont font = QApplication::font();
    font.setPixelSize(static_cast<int>(std::lround(style.size * scale)));
    font.setWeight(style.weight);
    return font;
}

namespace tabularText {

double width(const QString& text, const QFont& font)
{
    double total = 0;
    forEachPiece(text, QFontMetricsF(font), [&total](const QString&, double, double width) { total += width; });
    return total;
}

void draw(QPainter& painter, const QPointF& baseline, const QString& text, const QFont& font)
{
    painter.setFont(font);
    QPointF place = baseline;
    bool first = true;
    forEachPiece(text, QFontMetricsF(font), [&](const QString& piece, double advance, double width) {
        const double inset = (width - advance) / 2;
        if (std::exchange(first, false)) {
            // A narrow digit centred in its cell is not flush with the lines above and below: move the whole text, so
            // that no gap opens after the digit.
            place.rx() -= inset;
        }
        painter.drawText(place + QPointF(inset, 0), piece);
        place.rx() += width;
    });
}

} // namespace tabularText

QString singleLine(const QString& name)
{
    QString line = name;
    std::ranges::transform(line, line.begin(), visibleFor);
    return line;
}

QString plainToolTip(const QString& text)
{
    const QString line = singleLine(text);
    return Qt::mightBeRichText(line) ? u"<qt>%1</qt>"_s.arg(line.toHtmlEscaped()) : line;
}

} // namespace lapsa
