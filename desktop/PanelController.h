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
class ScheduledTask;
class StatusButton;
class WindowSystem;

/// Owner of the panel under the status button and of the preferences window. Each is made when it is asked for first
/// and kept from then on.
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

    /// A click on the status button: opens the panel, or closes it. One that has just closed it, by taking the focus
    /// away, does not open it again. `icon` is the place that was clicked.
    void toggle(StatusButton* button, const std::optional<QRect>& icon);
    /// Opens the panel at the place that the button knows, or brings it to the front. Without a button there is an
    /// alert in its place. Whether the panel closes by itself is decided here, by the settings of this moment.
    void show(StatusButton* button);
    void close();
    /// Shows items that the user has just put on the list, where the panel is open.
    void reveal(const QStringList& ids);
    /// Has a screen reader say that a warning has locked these items, where the panel is open.
    void announceLocked(const QStringList& ids);
    /// Opens the preferences, or brings them to the front.
    void showPreferences();
    /// Puts the theme into force for that window, and with it for all: they are never of two minds. Without a window
    /// nothing happens.
    void applyTheme(const QWidget* window);

    /// Null until they were asked for first.
    [[nodiscard]] PopoverWindow* popover() const { return m_popover.get(); }

    [[nodiscard]] PreferencesView* preferencesWindow() const { return m_preferencesWindow.get(); }

    /// The alert while it is open.
    [[nodiscard]] AlertDialog* alert() const;

signals:
    /// The panel is closed, however that came about. The highlight of the status button ends with it.
    void popoverDidClose();

private:
    void showAt(StatusButton* button, const std::optional<QRect>& icon);
    void ensurePopover();
    void makePreferencesWindow();
    void putBesidePanel(QWidget& window);
    void showAlert();
    void reactToClose(PopoverWindow::CloseReason reason);
    [[nodiscard]] PopoverWindow::Behavior behavior() const;

    Environment m_environment;
    std::unique_ptr<PopoverWindow> m_popover;
    std::unique_ptr<PreferencesView> m_preferencesWindow;
    QPointer<AlertDialog> m_alert;
    /// There while a click may still be the one that took the focus away.
    std::unique_ptr<ScheduledTask> m_justClosed;
};

} // namespace lapsa
