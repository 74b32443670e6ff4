// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaPanelView.h"
#include "PopoverWindow.h"

#include <QObject>
#include <QPointer>

#include <memory>

namespace lapsa {

class AlertDialog;
class FolderPicker;
class PointerMonitor;
class PreferencesView;
class RecoveryView;
class ScheduledTask;
class StatusButton;
class WindowSystem;

/// Owns the panel under the status button, the preferences and the Recovery window. Each is created when first asked
/// for and then kept.
class PanelController final : public QObject
{
    Q_OBJECT

public:
    /// What the panel and the preferences need. All of it outlives the controller.
    struct Environment
    {
        LapsaPanelView::Environment panel;
        FolderPicker& folderPicker;
        WindowSystem& windowSystem;
        PointerMonitor& pointer;
    };

    explicit PanelController(const Environment& environment);
    ~PanelController() override;

    /// Handles a click on the status button: opens the panel, or closes it. A click that has just closed it by taking
    /// the focus away does not open it again. `icon` is the place that was clicked.
    void toggle(StatusButton* button, const std::optional<QRect>& icon);
    /// Opens the panel at the button's reported place, or brings it to the front. Without a button it shows an alert
    /// instead. The current settings decide here whether the panel closes by itself.
    void show(StatusButton* button);
    void close();
    /// Shows items that the user has just added, if the panel is open.
    void reveal(const QStringList& ids);
    /// Lets a screen reader announce that a warning has locked these items, if the panel is open.
    void announceLocked(const QStringList& ids);
    /// Opens the preferences, or brings them to the front.
    void showPreferences();
    /// Opens the Recovery window, or brings it to the front.
    void showRecovery();
    /// Applies the current theme to that window, and with it to all windows, so that they never differ. Does nothing if
    /// `window` is null.
    void applyTheme(const QWidget* window);

    /// Null until first asked for.
    [[nodiscard]] PopoverWindow* popover() const { return m_popover.get(); }

    [[nodiscard]] PreferencesView* preferencesWindow() const { return m_preferencesWindow.get(); }

    [[nodiscard]] RecoveryView* recoveryWindow() const { return m_recoveryWindow.get(); }

    /// The alert while it is open, else null.
    [[nodiscard]] AlertDialog* alert() const;

signals:
    /// The panel has closed, for whatever reason. The highlight of the status button ends with it.
    void popoverDidClose();

private:
    void showAt(StatusButton* button, const std::optional<QRect>& icon);
    void adaptToCompositing();
    void adaptToWorkArea();
    void ensurePopover();
    void makePreferencesWindow();
    void makeRecoveryWindow();
    void present(QWidget& window);
    void putBesidePanel(QWidget& window);
    void showAlert();
    void reactToClose(PopoverWindow::CloseReason reason);
    [[nodiscard]] PopoverWindow::Behavior behavior() const;

    Environment m_environment;
    std::unique_ptr<PopoverWindow> m_popover;
    /// What the panel was last opened at.
    std::optional<QRect> m_icon;
    QMetaObject::Connection m_workAreaWatch;
    std::unique_ptr<PreferencesView> m_preferencesWindow;
    std::unique_ptr<RecoveryView> m_recoveryWindow;
    QPointer<AlertDialog> m_alert;
    /// Set while a click may still be the one that took the focus away.
    std::unique_ptr<ScheduledTask> m_justClosed;
};

} // namespace lapsa
