// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopAppearance.h"

#include "PortalSetting.h"
#include "XSettings.h"

#include <QApplication>
#include <QPalette>
#include <QRegularExpression>
#include <QVariant>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString settingsGroup = u"org.freedesktop.appearance"_s;
const QString settingsKey = u"color-scheme"_s;

/// Of the portal's documentation; 0 is "no preference".
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

/// Themes of GTK have their scheme in their name only: "Adwaita-dark", "Arc-Dark", "Materia-dark-compact".
bool namesDarkTheme(const QString& name)
{
    static const QRegularExpression dark(u"(^|[^a-z])dark($|[^a-z])|HighContrastInverse"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    return dark.match(name).hasMatch();
}

std::optional<ColorScheme> schemeOf(const XSettings& settings)
{
    const QString theme = settings.value("Net/ThemeName").toString();
    if (namesDarkTheme(theme) || settings.value("Gtk/ApplicationPreferDarkTheme").toInt() != 0) {
        return ColorScheme::Dark;
    }
    return theme.isEmpty() ? std::nullopt : std::optional(ColorScheme::Light);
}

} // namespace

FreedesktopAppearance::FreedesktopAppearance(std::function<QPalette(ColorScheme)> paletteFor, ColorScheme toolkitScheme)
    : m_paletteFor(std::move(paletteFor))
    , m_toolkitScheme(toolkitScheme)
{}

FreedesktopAppearance::~FreedesktopAppearance() = default;

void FreedesktopAppearance::setForcedScheme(std::optional<ColorScheme> scheme)
{
    m_forced = scheme;
    if (!m_forced && !m_setting) {
        m_setting = std::make_unique<PortalSetting>(settingsGroup, settingsKey);
        connect(m_setting.get(), &PortalSetting::valueChanged, this, &FreedesktopAppearance::follow);
        m_xSettings = std::make_unique<XSettings>();
        connect(m_xSettings.get(), &XSettings::changed, this, &FreedesktopAppearance::follow);
    }
    apply(m_forced ? *m_forced : desktopScheme());
}

void FreedesktopAppearance::follow()
{
    if (!m_forced) {
        apply(desktopScheme());
    }
}

ColorScheme FreedesktopAppearance::desktopScheme() const
{
    switch (m_setting->value().toUInt()) {
    case preferDark:
        return ColorScheme::Dark;
    case preferLight:
        return ColorScheme::Light;
    default:
        return schemeOf(*m_xSettings).value_or(m_toolkitScheme);
    }
}

void FreedesktopAppearance::apply(ColorScheme scheme)
{
    if (m_applied == scheme) {
        return;
    }
    m_applied = scheme;
    QApplication::setPalette(m_paletteFor(scheme));
    if (m_scheme != scheme) {
        m_scheme = scheme;
        emit schemeChanged(scheme);
    }
}

} // namespace lapsa
