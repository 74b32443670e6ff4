// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaTheme.h"
#include "WorkAnnouncements.h"

#include <QHash>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace lapsa {

struct AddResult;
class Announcer;
class Clock;
class DeletionUndo;
class DropZone;
class FileChooser;
class FileIconSource;
class FileListView;
class ItemKinds;
class ItemWorkSource;
struct LapsaItem;
class LapsaStore;
class LinkButton;
class MainQueue;
class ScheduledTask;
class Sheet;
class TextLabel;

/// The panel: header, drop zone, message, count and the list of items. It updates once a second while it is visible,
/// and does nothing while it is not.
class LapsaPanelView final : public QWidget
{
    Q_OBJECT

public:
    /// What the panel needs. All of it outlives the panel.
    struct Environment
    {
        LapsaStore& store;
        const Clock& clock;
        MainQueue& mainQueue;
        FileIconSource& icons;
        ItemKinds& kinds;
        const ItemWorkSource& work;
    };

    /// Its size where there is room for it.
    static constexpr QSize extent{430, 560};
    LapsaPanelView(const Environment& environment, std::function<void()> openPreferences, QWidget* parent = nullptr);
    ~LapsaPanelView() override;

    /// The open chooser; null if none is open.
    [[nodiscard]] FileChooser* chooser() const;
    /// Whether a sheet covers the panel; Escape then belongs to it.
    [[nodiscard]] bool showingSheet() const;
    /// Scrolls to items that the user has just added and highlights them once. Does nothing while the panel is closed.
    void reveal(const QStringList& ids);
    /// Lets a screen reader announce that these items were locked from a warning.
    void announceLocked(const QStringList& ids);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    [[nodiscard]] QWidget* makeHeader();
    [[nodiscard]] QWidget* makeDropZone();
    [[nodiscard]] QWidget* makeMessage();
    [[nodiscard]] QWidget* makeCount();
    [[nodiscard]] QWidget* makeList();
    void noteChange();
    void noteDueItems();
    void announceGoneItems();
    void refresh();
    void tick();
    void followWork();
    void showWork();
    void applyTheme();
    void addDroppedFiles(const QList<QUrl>& urls);
    void addChosenFiles(const QList<QUrl>& urls);
    void showAdded(const AddResult& result);
    void showUndo();
    void showChooser();
    void showTimeSheet(const QList<LapsaItem>& items);
    void dismissSheetOfVanishedItem();
    Environment m_environment;
    std::function<void()> m_openPreferences;
    std::unique_ptr<ScheduledTask> m_clock;
    /// Exists while work on files is on the screen.
    std::unique_ptr<ScheduledTask> m_workClock;
    WorkAnnouncements m_workAnnouncements;
    std::optional<LapsaTheme> m_appliedTheme;
    bool m_changeNoted = false;
    /// The names, by id, of items that may be removed automatically by the noted change.
    QHash<QString, QString> m_due;
    DropZone* m_dropZone = nullptr;
    DeletionUndo* m_undo = nullptr;
    QWidget* m_messageRow = nullptr;
    TextLabel* m_message = nullptr;
    LinkButton* m_undoLink = nullptr;
    TextLabel* m_count = nullptr;
    FileListView* m_list = nullptr;
    Announcer* m_announcer = nullptr;
    QPointer<FileChooser> m_chooser;
    /// The folder that the chooser showed last; empty until then.
    QString m_lastFolder;
    QPointer<Sheet> m_sheet;
    QStringList m_sheetItemIds;
};

} // namespace lapsa
