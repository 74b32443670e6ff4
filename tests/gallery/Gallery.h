// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Appearance.h"
#include "FileIconSource.h"
#include "StoreWorld.h"

#include <QDir>
#include <QHash>
#include <QIcon>
#include <QString>
#include <QWidget>

#include <cstdint>

class QLineEdit;

namespace lapsa::test {

/// The installed icon theme's icons, by file type.
class ThemeIcons final : public FileIconSource
{
public:
    [[nodiscard]] QIcon icon(const QUrl& url) override;

private:
    QHash<QString, QIcon> m_icons;
};

/// A store with files of its own, for one picture.
struct Scene
{
    /// Puts a file (or, with a slash at its end, a folder) on countdown.
    void add(const QString& name, std::int64_t minutes);

    StoreWorld world;
    ThemeIcons icons;
};

/// Writes pictures named "<surface>-<state>-<scheme>-<language>@<scale>x.png".
class Gallery final
{
public:
    explicit Gallery(const QString& folder);

    void paintEverything();

private:
    void paintPanel();
    void paintInUse();
    void paintSheet();
    void paintPreferences();
    void paintAlert();
    void paintChoosers();
    void paintFieldMenu(QLineEdit& field);
    void paintSplash();
    void paintControls();
    void paintArtwork();

    void save(QWidget& surface, const QString& name) const;

    QDir m_folder;
    ColorScheme m_scheme = ColorScheme::Light;
};

} // namespace lapsa::test
