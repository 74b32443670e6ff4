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

namespace lapsa {

class LapsaPanelView;
class PreferencesView;
class RecoveryView;

} // namespace lapsa

namespace lapsa::test {

/// The installed icon theme's icons, by file type.
class ThemeIcons final : public FileIconSource
{
public:
    [[nodiscard]] QIcon icon(const QUrl& url, ItemKind kind) override;

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
    /// A panel with several items: added to, hovered, focused, dragged over.
    void paintPanelStates(Scene& scene, LapsaPanelView& panel);
    void paintPanelMessage(Scene& scene, LapsaPanelView& panel);
    /// What "Delete now" offers to put back.
    void paintPanelUndo();
    /// Names that no row can show as they are, at the usual text size and at twice of it.
    void paintPanelNames();
    void paintInUse();
    /// Rows whose files are being moved and removed, and one whose disk does not answer.
    void paintWork();
    /// Selected rows with their menu, and the list filtered by name.
    void paintMany();
    void paintSheet();
    void paintPreferences();
    void paintRules(Scene& scene, PreferencesView& view);
    void paintRecovery();
    void paintRecoveryMessages(Scene& scene, RecoveryView& window);
    /// Right to left, large text, and the row of the preferences.
    void paintRecoveryVariants();
    void paintAlert();
    void paintChoosers();
    void paintWaitingChooser(const QString& folder);
    void paintFieldMenu(QLineEdit& field);
    void paintSplash();
    void paintControls();
    void paintArtwork();

    void save(QWidget& surface, const QString& name) const;

    QDir m_folder;
    ColorScheme m_scheme = ColorScheme::Light;
};

} // namespace lapsa::test
