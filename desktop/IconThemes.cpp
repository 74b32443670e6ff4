// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "IconThemes.h"

#include <QFile>
#include <QIcon>
#include <QStringList>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// Themes with icons for the usual kinds of files; first those whose pages show on light and dark grounds.
const QStringList commonThemes{u"Adwaita"_s, u"Papirus"_s, u"breeze"_s, u"elementary"_s,
                               u"Yaru"_s,    u"Mint-Y"_s,  u"oxygen"_s, u"gnome"_s};

bool isInstalled(const QString& theme)
{
    return !theme.isEmpty() && std::ranges::any_of(QIcon::themeSearchPaths(), [&theme](const QString& folder) {
        return QFile::exists(u"%1/%2/index.theme"_s.arg(folder, theme));
    });
}

/// The theme, or its twin where only that suits the scheme and is installed; empty if neither is.
QString installedFor(ColorScheme scheme, const QString& theme)
{
    QString light = theme;
    for (const QString& ending : {u"-dark"_s, u"-Dark"_s}) {
        if (light.endsWith(ending)) {
            light.chop(ending.size());
        }
    }
    QStringList candidates{theme};
    if (scheme == ColorScheme::Light) {
        candidates.prepend(light);
    } else if (light == theme) {
        candidates = {theme + u"-dark"_s, theme + u"-Dark"_s, theme};
    }
    const auto found = std::ranges::find_if(candidates, isInstalled);
    return found == candidates.end() ? QString() : *found;
}

} // namespace

void useIconsFor(ColorScheme scheme, const QString& desktopTheme)
{
    QString common;
    for (const QString& theme : commonThemes) {
        if (common = installedFor(scheme, theme); !common.isEmpty()) {
            break;
        }
    }
    // The toolkit's own last resort has icons of programs only.
    const bool named = !desktopTheme.isEmpty() && desktopTheme != u"hicolor"_s;
    const QString wanted = named ? installedFor(scheme, desktopTheme) : QString();
    const QString theme = wanted.isEmpty() ? common : wanted;
    if (!theme.isEmpty()) {
        QIcon::setThemeName(theme);
    }
    if (!common.isEmpty()) {
        QIcon::setFallbackThemeName(common);
    }
}

} // namespace lapsa
