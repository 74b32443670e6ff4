// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppDelegate.h"

#include "AppPaths.h"
#include "CleanupService.h"
#include "FileSystem.h"
#include "LapsaStore.h"
#include "NotificationCentre.h"
#include "NotificationService.h"
#include "SettingsStore.h"

#include <QCoreApplication>

namespace lapsa {

using namespace Qt::StringLiterals;

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
    connect(&m_environment.notificationCentre, &NotificationCentre::responseReceived, this,
            &AppDelegate::notificationClicked);
    m_notificationService->requestAuthorization();
    m_cleanupService->start();
}

void AppDelegate::applicationOpen(const QList<QUrl>& urls)
{
    m_store->addFiles(urls, {.applyFileTypeRules = true});
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
}

} // namespace lapsa
