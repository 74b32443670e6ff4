// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Gallery.h"

#include "Localized.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QFile>
#include <QMimeDatabase>
#include <QPixmap>

namespace lapsa::test {

using namespace Qt::StringLiterals;

QIcon ThemeIcons::icon(const QUrl& url, ItemKind)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFile(url.toLocalFile());
    QIcon& icon = m_icons[type.name()];
    if (icon.isNull()) {
        icon = QIcon::fromTheme(type.iconName(), QIcon::fromTheme(type.genericIconName()));
    }
    return icon;
}

void Scene::add(const QString& name, std::int64_t minutes)
{
    const bool folder = name.endsWith(u'/');
    const QString path = folder ? world.home.makeFolder(name.chopped(1)) : world.home.makeFile(name);
    world.add(path, minutes);
}

Gallery::Gallery(const QString& folder)
    : m_folder(folder)
{}

void Gallery::paintEverything()
{
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        m_scheme = scheme;
        QApplication::setPalette(themePalette(scheme));
        paintPanel();
        paintInUse();
        paintWork();
        paintMany();
        paintSheet();
        paintPreferences();
        paintRecovery();
        paintRecoveryVariants();
        paintAlert();
        paintChoosers();
        paintControls();
    }
    paintSplash();
    paintArtwork();
}

void Gallery::save(QWidget& surface, const QString& name) const
{
    QApplication::processEvents();
    const QString file = u"%1-%2-%3@%4x.png"_s
                             .arg(name, m_scheme == ColorScheme::Dark ? u"dark"_s : u"light"_s,
                                  Localized::isItalian() ? u"it"_s : u"en"_s)
                             .arg(surface.devicePixelRatioF());
    QPixmap picture(surface.size() * surface.devicePixelRatioF());
    picture.setDevicePixelRatio(surface.devicePixelRatioF());
    picture.fill(Qt::transparent);
    surface.render(&picture);
    if (!picture.save(m_folder.filePath(file))) {
        qFatal("cannot write %s", qPrintable(file));
    }
}

} // namespace lapsa::test
