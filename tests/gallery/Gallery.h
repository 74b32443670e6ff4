// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Appearance.h"
#include "FileIconSource.h"
#include "LapsaStore.h"
#include "ManualTime.h"
#include "Recorders.h"
#include "SettingsStore.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QHash>
#include <QIcon>
#include <QString>
#include <QWidget>

#include <memory>

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
    Scene();

    /// Puts a file (or, with a slash at its end, a folder) on countdown.
    void add(const QString& name, std::int64_t minutes);

    [[nodiscard]] const LapsaItem& item(qsizetype index) const { return store->items()[index]; }

    TemporaryHome home;
    ManualTime time;
    RecordingAppearance appearance;
    RecordingWorkspace workspace;
    RecordingPasteboard pasteboard;
    ThemeIcons icons;
    std::unique_ptr<SettingsStore> settingsStore;
    std::unique_ptr<LapsaStore> store;
};

/// Writes pictures named "<surface>-<state>-<scheme>-<language>@<scale>x.png".
class Gallery final
{
public:
    explicit Gallery(const QString& folder);

    void paintEverything();

private:
    void paintPanel();
    void paintSheet();
    void paintControls();
    void paintArtwork();

    void save(QWidget& surface, const QString& name) const;

    QDir m_folder;
    ColorScheme m_scheme = ColorScheme::Light;
};

} // namespace lapsa::test
