// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppDelegate.h"

#include "AppPaths.h"
#include "CleanupService.h"
#include "FileIconProvider.h"
#include "FileSystem.h"
#include "LapsaStore.h"
#include "NotificationCentre.h"
#include "NotificationService.h"
#include "PanelController.h"
#include "SettingsStore.h"
#include "SplashWindowController.h"

#include <QCoreApplication>

#include <chrono>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::duration<double> splashDuration{1.35};

} // namespace

AppDelegate::AppDelegate(const Environment& environment)
    : m_environment(environment)
{}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    // Before anything else may move a file there.
    fileSystem::removeInterruptedCopies(AppPaths::recoveryDirectory().toLocalFile());

    m_settingsStore = std::make_unique<SettingsStore>(m_environment.mainQueue);
    m_store = std::make_unique<LapsaStore>(*m_settingsStore,
                                           LapsaStore::Environment{m_environment.clock, m_environment.mainQueue,
                                                                   m_environment.appearance, m_environment.workspace,
                                                                   m_environment.pasteboard});
    m_notificationService = std::make_unique<NotificationService>(m_environment.notificationCentre);
    m_cleanupService = std::make_unique<CleanupService>(
        *m_store, *m_notificationService, CleanupService::Environment{m_environment.clock, m_environment.mainQueue});
    m_panelController =
        std::make_unique<PanelController>(PanelController::Environment{.store = *m_store,
                                                                       .clock = m_environment.clock,
                                                                       .mainQueue = m_environment.mainQueue,
                                                                       .icons = FileIconProvider::shared()});
    connect(m_panelController.get(), &PanelController::popoverDidClose, this, &AppDelegate::clearStatusButtonHighlight);
    connect(&m_environment.notificationCentre, &NotificationCentre::responseReceived, this,
            &AppDelegate::notificationClicked);
    m_notificationService->requestAuthorization();
    SplashWindowController::showSplash(splashDuration);
    m_cleanupService->start();
}

void AppDelegate::applicationOpen(const QList<QUrl>& urls)
{
    m_store->addFiles(urls, {.applyFileTypeRules = true});
}

void AppDelegate::openPanel()
{
    m_panelController->show(&m_statusButton);
}

void AppDelegate::saveEverything()
{
    if (!m_store) {
        return;
    }
    m_store->saveNow();
    if (m_settingsStore->savePending()) {
        m_settingsStore->saveNow();
    }
}

void AppDelegate::applicationWillTerminate()
{
    if (m_terminated || !m_cleanupService) {
        return;
    }
    m_terminated = true;
    m_cleanupService->stop();
    saveEverything();
}

void AppDelegate::quit()
{
    // Not QCoreApplication::quit(), which any open window could refuse.
    QCoreApplication::exit();
}

void AppDelegate::notificationClicked(const QHash<QString, QString>& userInfo)
{
    if (const auto itemId = userInfo.constFind(u"itemId"_s); itemId != userInfo.cend()) {
        m_store->lockItem(*itemId);
    }
    openPanel();
}

void AppDelegate::clearStatusButtonHighlight()
{
    m_statusButton.setHighlighted(false);
}

} // namespace lapsa
