// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppDelegate.h"

#include "AddMessage.h"
#include "AddResult.h"
#include "AppPaths.h"
#include "CleanupService.h"
#include "FileIconProvider.h"
#include "FileWriter.h"
#include "FinderSelectionReader.h"
#include "HiddenWindows.h"
#include "HotKeyManager.h"
#include "ItemKinds.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "MainQueue.h"
#include "Memory.h"
#include "NotificationCentre.h"
#include "NotificationService.h"
#include "PanelController.h"
#include "SettingsStore.h"
#include "SplashWindowController.h"
#include "StatusButton.h"
#include "StatusItem.h"
#include "Workspace.h"

#include <QCoreApplication>
#include <QPointer>

#include <chrono>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::duration<double> splashDuration{1.35};
constexpr int statusIconSize = 18;
/// The longest wait for the disk when the program ends: quitting must not hang on a slow disk.
constexpr std::chrono::milliseconds longestEnd{1000};
/// After a window has closed: longer than its fade-out, and long enough for a user who wants it back at once.
constexpr std::chrono::seconds restBeforeTidying{2};

/// A part that the launch creates. Asking for it earlier is a programming error; it ends here, not somewhere inside it.
template <typename Part>
Part& made(const std::unique_ptr<Part>& part, const char* name)
{
    if (!part) {
        qFatal("The %s is asked for before the launch", name);
    }
    return *part;
}

} // namespace

AppDelegate::AppDelegate(const Environment& environment)
    : m_environment(environment)
{}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    m_fileWriter = std::make_unique<FileWriter>(m_environment.lanes);
    m_settingsStore = std::make_unique<SettingsStore>(m_environment.mainQueue, *m_fileWriter);
    m_itemKinds = std::make_unique<ItemKinds>(m_environment.lanes);
    m_store = std::make_unique<LapsaStore>(
        *m_settingsStore,
        LapsaStore::Environment{m_environment.clock, m_environment.mainQueue, m_environment.lanes, *m_fileWriter,
                                m_environment.appearance, m_environment.workspace, m_environment.pasteboard});
    m_notificationService = std::make_unique<NotificationService>(m_environment.notificationCentre);
    m_cleanupService = std::make_unique<CleanupService>(
        *m_store, *m_notificationService, CleanupService::Environment{m_environment.clock, m_environment.mainQueue});
    makePanelController();
    m_hotKeyManager = std::make_unique<HotKeyManager>(m_environment.hotKeys, [delegate = QPointer(this)] {
        if (delegate) {
            delegate->addFinderSelectionFromShortcut();
        }
    });
    connect(&m_environment.notificationCentre, &NotificationCentre::responseReceived, this,
            &AppDelegate::notificationClicked);
    m_notificationService->requestAuthorization();
    setUpStatusItem();
    SplashWindowController::showSplash(splashDuration, m_environment.windowSystem);
    giveBackMemoryAfter(std::chrono::duration_cast<std::chrono::milliseconds>(splashDuration) + restBeforeTidying);
    m_cleanupService->start();
    m_hotKeyManager->registerHotKey();
}

void AppDelegate::makePanelController()
{
    m_panelController =
        std::make_unique<PanelController>(PanelController::Environment{.panel = {.store = *m_store,
                                                                                 .clock = m_environment.clock,
                                                                                 .mainQueue = m_environment.mainQueue,
                                                                                 .icons = FileIconProvider::shared(),
                                                                                 .kinds = *m_itemKinds,
                                                                                 .work = *m_store},
                                                                       .folderPicker = m_environment.folderPicker,
                                                                       .windowSystem = m_environment.windowSystem,
                                                                       .pointer = m_environment.pointer});
    connect(m_panelController.get(), &PanelController::popoverDidClose, this, [this] {
        clearStatusButtonHighlight();
        giveBackMemoryAfter(restBeforeTidying);
    });
}

void AppDelegate::setUpStatusItem()
{
    m_statusItem = m_environment.statusBar.makeStatusItem();
    StatusButton* const button = statusButton();
    if (button == nullptr) {
        return;
    }
    if (!button->setTemplateImage(u"StatusIcon"_s, statusIconSize)) {
        // Not Lapsa's initial, kept on purpose: users of this program know the letter.
        button->setTitle(u"C"_s);
    }
    button->setToolTip(u"Lapsa"_s);
    connect(button, &StatusButton::clicked, this, &AppDelegate::togglePanel);
    // In the current language; a change takes effect at the next start.
    m_statusItem->setMenu({
        {.title = Localized::openLapsa(), .shortcut = {}, .action = [this] { openPanel(); }},
        {.title = Localized::preferences(), .shortcut = u"Ctrl+,"_s, .action = [this] { openPreferences(); }},
        {},
        {.title = Localized::addFinderSelection(), .shortcut = {}, .action = [this] { addFinderSelectionMenu(); }},
        {.title = Localized::openDataFolder(), .shortcut = {}, .action = [this] { openDataFolder(); }},
        {},
        {.title = Localized::quit(), .shortcut = u"Ctrl+Q"_s, .action = [this] { quit(); }},
    });
}

void AppDelegate::applicationOpen(const QList<QUrl>& urls)
{
    made(m_store, "store").addFiles(urls, {.applyFileTypeRules = true}, [this](const AddResult& result) {
        showAddMessage(*m_store, result);
        m_panelController->reveal(result.ids);
    });
}

LapsaStore& AppDelegate::store() const
{
    return made(m_store, "store");
}

void AppDelegate::togglePanel(const std::optional<QRect>& icon)
{
    made(m_panelController, "panel controller").toggle(statusButton(), icon);
}

void AppDelegate::openPanel()
{
    made(m_panelController, "panel controller").show(statusButton());
}

void AppDelegate::openPreferences()
{
    made(m_panelController, "panel controller").showPreferences();
}

void AppDelegate::openRecovery()
{
    made(m_panelController, "panel controller").showRecovery();
}

void AppDelegate::addFinderSelectionFromShortcut()
{
    const QList<QUrl> urls =
        FinderSelectionReader::selectedFileURLs(m_environment.fileManagerSelection, [this] { saveEverything(); });
    // Later, for files on a slow disk, the user may have closed the panel again.
    const auto opened = std::make_shared<bool>(false);
    const auto openOnce = [this, opened] {
        if (!std::exchange(*opened, true)) {
            openPanel();
        }
    };
    if (!urls.isEmpty()) {
        made(m_store, "store").addFiles(urls, {.applyFileTypeRules = true}, [this, openOnce](const AddResult& result) {
            showAddMessage(*m_store, result);
            openOnce();
            m_panelController->reveal(result.ids);
        });
    }
    openOnce();
}

void AppDelegate::addFinderSelectionMenu()
{
    addFinderSelectionFromShortcut();
}

void AppDelegate::openDataFolder()
{
    m_environment.workspace.reveal(AppPaths::applicationSupportDirectory());
}

void AppDelegate::performAction(const QString& name)
{
    static const QHash<QString, void (AppDelegate::*)()> actions{
        {u"open-lapsa"_s, &AppDelegate::openPanel},
        {u"preferences"_s, &AppDelegate::openPreferences},
        {u"recovery"_s, &AppDelegate::openRecovery},
        {u"add-selection"_s, &AppDelegate::addFinderSelectionMenu},
        {u"open-data-folder"_s, &AppDelegate::openDataFolder},
        {u"quit"_s, &AppDelegate::quit},
    };
    if (const auto action = actions.constFind(name); action != actions.cend()) {
        (this->**action)();
    }
}

void AppDelegate::saveEverything()
{
    made(m_store, "store").saveNow();
    if (m_settingsStore->savePending()) {
        m_settingsStore->saveNow();
    }
    m_fileWriter->flush(longestEnd / 2);
}

void AppDelegate::applicationWillTerminate()
{
    if (m_terminated) {
        return;
    }
    m_terminated = true;
    made(m_cleanupService, "cleanup service").stop();
    made(m_hotKeyManager, "hot key manager").unregister();
    // First, so that what was just opened, and what the lanes have done, is saved as well.
    m_environment.lanes.awaitLooks(longestEnd / 5);
    m_environment.lanes.finish(longestEnd * 3 / 10);
    saveEverything();
}

void AppDelegate::quit()
{
    // Showing a window already handles events, and exit() has no effect on an event loop that is not running yet.
    m_quitting = true;
    // Not QCoreApplication::quit(), which any open window could refuse.
    QCoreApplication::exit();
}

StatusButton* AppDelegate::statusButton() const
{
    return made(m_statusItem, "status item").button();
}

void AppDelegate::notificationClicked(const QHash<QString, QString>& userInfo)
{
    const QStringList ids = NotificationService::itemsOf(userInfo);
    made(m_store, "store").lockItems({ids.begin(), ids.end()});
    openPanel();
    m_panelController->announceLocked(ids);
}

void AppDelegate::giveBackMemoryAfter(std::chrono::milliseconds delay)
{
    m_tidying = m_environment.mainQueue.asyncAfter(delay, [] {
        forgetPicturesOfHiddenWindows();
        giveBackFreedMemory();
    });
}

void AppDelegate::clearStatusButtonHighlight()
{
    StatusButton* const button = m_statusItem ? m_statusItem->button() : nullptr;
    if (button != nullptr) {
        button->setHighlighted(false);
    }
}

} // namespace lapsa
