// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileIconProvider.h"

#include "FileName.h"
#include "Picture.h"

#include <QGuiApplication>
#include <QMimeDatabase>
#include <QPainter>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize iconSize(24, 24);

/// Another theme has other icons.
QString keyOf(const QUrl& url)
{
    const QString extension = FileName::of(lastPathComponent(url.path())).extension.toLower();
    return QIcon::themeName() + u'/' + (extension.isEmpty() ? u"_blank"_s : extension);
}

/// Scaled to fit if the theme has only a smaller icon.
QPixmap atSize(const QIcon& icon, double devicePixelRatio)
{
    const QPixmap found = icon.pixmap(iconSize, devicePixelRatio);
    if (found.isNull() || found.deviceIndependentSize() == iconSize) {
        return found;
    }
    QPixmap pixmap((QSizeF(iconSize) * devicePixelRatio).toSize());
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QRectF place({}, found.deviceIndependentSize().scaled(iconSize, Qt::KeepAspectRatio));
    place.moveCenter(QRectF({}, iconSize).center());
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, found, QRectF(found.rect()));
    return pixmap;
}

QList<double> wantedRatios()
{
    QList<double> ratios{1, 2};
    if (const double ratio = qGuiApp->devicePixelRatio(); !ratios.contains(ratio)) {
        ratios.push_back(ratio);
    }
    return ratios;
}

/// Rendered once: drawing a row never goes back to the theme.
QIcon sized(const QIcon& icon)
{
    QIcon result;
    for (const double ratio : wantedRatios()) {
        if (const QPixmap pixmap = atSize(icon, ratio); !pixmap.isNull()) {
            result.addPixmap(pixmap);
        }
    }
    return result;
}

QIcon drawn(const QString& name)
{
    QIcon icon;
    for (const double ratio : wantedRatios()) {
        icon.addPixmap(svgPicture(u":/lapsa/icons/%1.svg"_s.arg(name), iconSize, ratio));
    }
    return icon;
}

QIcon fromTheme(const QStringList& names)
{
    const auto name =
        std::ranges::find_if(names, [](const QString& candidate) { return QIcon::hasThemeIcon(candidate); });
    return name == names.end() ? QIcon() : sized(QIcon::fromTheme(*name));
}

} // namespace

FileIconProvider::FileIconProvider(Lookup lookup)
    : m_lookup(std::move(lookup))
{}

FileIconProvider& FileIconProvider::shared()
{
    static FileIconProvider provider(themedFileIcon);
    return provider;
}

QIcon FileIconProvider::icon(const QUrl& url, ItemKind kind)
{
    const QString key = keyOf(url);
    if (const auto known = m_cache.constFind(key); known != m_cache.cend()) {
        return *known;
    }
    if (kind == ItemKind::Folder) {
        m_provisional.remove(key);
        return *m_cache.insert(key, m_lookup(url, kind));
    }
    if (!m_provisional.contains(key)) {
        m_provisional.insert(key, m_lookup(url, kind));
    }
    return kind == ItemKind::Unknown ? m_provisional.value(key) : *m_cache.insert(key, m_provisional.take(key));
}

QIcon themedFileIcon(const QUrl& url, ItemKind kind)
{
    if (kind == ItemKind::Folder) {
        const QIcon icon = fromTheme({u"folder"_s, u"inode-directory"_s});
        return icon.isNull() ? drawn(u"folder"_s) : icon;
    }
    // By name only: file contents are not read to choose an icon.
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(lastPathComponent(url.toLocalFile()), QMimeDatabase::MatchExtension);
    const QIcon icon = fromTheme({type.iconName(), type.genericIconName(), u"text-x-generic"_s});
    return icon.isNull() ? drawn(u"page"_s) : icon;
}

} // namespace lapsa
