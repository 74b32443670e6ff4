// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ThemePalette.h"

#include <algorithm>
#include <cmath>

namespace lapsa {

namespace {

struct SchemeColors
{
    QColor window;
    QColor surface;
    QColor primary;
    QColor secondary;
    QColor accent;
    QColor danger;
    QColor notice;
    QColor separator;
};

constexpr double separatorOpacityLight = 0.10;
constexpr double separatorOpacityDark = 0.12;
constexpr double disabledOpacity = 0.45;
/// Below this saturation, the desktop's highlight is grey and not an accent.
constexpr double leastAccentSaturation = 0.2;
constexpr double lightnessStep = 0.01;

const SchemeColors& colorsOf(ColorScheme scheme)
{
    static const SchemeColors light{
        .window = QColor(0xF6F6F8),
        .surface = QColor(0xFFFFFF),
        .primary = QColor(0x1C1C1E),
        .secondary = QColor(0x5B5D66),
        .accent = QColor(0x0A62DA),
        .danger = QColor(0xC62828),
        .notice = QColor(0xA8500A),
        .separator = withOpacity(Qt::black, separatorOpacityLight),
    };
    static const SchemeColors dark{
        .window = QColor(0x1F2024),
        .surface = QColor(0x2A2B30),
        .primary = QColor(0xF2F2F4),
        .secondary = QColor(0xA9ABB3),
        .accent = QColor(0x5AA2FF),
        .danger = QColor(0xFF6B6B),
        .notice = QColor(0xFFB454),
        .separator = withOpacity(Qt::white, separatorOpacityDark),
    };
    return scheme == ColorScheme::Dark ? dark : light;
}

double linear(double component)
{
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor legibleAccent(const QColor& accent, ColorScheme scheme)
{
    const SchemeColors& colors = colorsOf(scheme);
    const auto legible = [&colors](const QColor& color) {
        return std::min(contrastRatio(color, colors.window), contrastRatio(color, colors.surface)) >= textContrast;
    };
    float hue = 0;
    float saturation = 0;
    float lightness = 0;
    accent.getHslF(&hue, &saturation, &lightness);
    const double step = scheme == ColorScheme::Dark ? lightnessStep : -lightnessStep;
    QColor color = accent.toRgb();
    for (double level = lightness; !legible(color) && level >= 0 && level <= 1; level += step) {
        color = QColor::fromHslF(std::max(hue, 0.0F), saturation, static_cast<float>(level)).toRgb();
    }
    return color;
}

QColor onAccent(const QColor& accent)
{
    return contrastRatio(Qt::white, accent) >= textContrast ? QColor(Qt::white) : colorsOf(ColorScheme::Light).primary;
}

} // namespace

QPalette themePalette(ColorScheme scheme, std::optional<QColor> desktopAccent)
{
    const SchemeColors& colors = colorsOf(scheme);
    const QColor accent = legibleAccent(desktopAccent.value_or(colors.accent), scheme);

    const QColor line = blended(colors.separator, colors.surface);
    QPalette palette(colors.primary, colors.surface, colors.surface, line, line, colors.primary, colors.danger,
                     colors.surface, colors.window);
    palette.setColor(QPalette::AlternateBase, colors.window);
    palette.setColor(QPalette::ToolTipBase, colors.surface);
    palette.setColor(QPalette::ToolTipText, colors.primary);
    palette.setColor(QPalette::PlaceholderText, colors.secondary);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, onAccent(accent));
    palette.setColor(QPalette::Link, accent);
    palette.setColor(QPalette::LinkVisited, colors.notice);
    palette.setColor(QPalette::BrightText, colors.danger);
    palette.setColor(QPalette::Midlight, colors.separator);
    palette.setColor(QPalette::Shadow, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, withOpacity(colors.primary, disabledOpacity));
    }
    return palette;
}

std::optional<QColor> accentOf(const QPalette& desktopPalette)
{
    static const QColor toolkitAccents[] = {QColor(0, 0, 128), QColor(48, 140, 198)};
    const QColor highlight = desktopPalette.color(QPalette::Active, QPalette::Highlight);
    if (std::ranges::find(toolkitAccents, highlight) != std::end(toolkitAccents) ||
        highlight.hslSaturationF() < leastAccentSaturation) {
        return std::nullopt;
    }
    return highlight;
}

ColorScheme schemeOf(const QPalette& palette)
{
    return contrastRatio(palette.color(QPalette::Window), Qt::white) >
                   contrastRatio(palette.color(QPalette::Window), Qt::black)
               ? ColorScheme::Dark
               : ColorScheme::Light;
}

QPalette::ColorRole paletteRole(ColorRole role)
{
    switch (role) {
    case ColorRole::Window:
        return QPalette::Window;
    case ColorRole::Surface:
        return QPalette::Base;
    case ColorRole::Primary:
        return QPalette::WindowText;
    case ColorRole::Secondary:
        return QPalette::PlaceholderText;
    case ColorRole::Accent:
        return QPalette::Highlight;
    case ColorRole::OnAccent:
        return QPalette::HighlightedText;
    case ColorRole::Danger:
        return QPalette::BrightText;
    case ColorRole::Notice:
        return QPalette::LinkVisited;
    case ColorRole::Separator:
        return QPalette::Midlight;
    }
    return QPalette::WindowText;
}

QColor themeColor(ColorRole role, const QPalette& palette)
{
    return palette.color(QPalette::Active, paletteRole(role));
}

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(color.alphaF() * static_cast<float>(opacity));
    return color;
}

QColor blended(const QColor& color, const QColor& ground)
{
    return mixed(ground, QColor(color.red(), color.green(), color.blue()), color.alphaF());
}

QColor mixed(const QColor& from, const QColor& to, double progress)
{
    const auto between = [progress](float one, float other) {
        return one + (other - one) * static_cast<float>(std::clamp(progress, 0.0, 1.0));
    };
    return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                            between(from.blueF(), to.blueF()), between(from.alphaF(), to.alphaF()));
}

double contrastRatio(const QColor& one, const QColor& other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

} // namespace lapsa
