// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreSetup.h"

#include "JSONEncoder.h"

#include <chrono>
#include <tuple>

namespace lapsa::test {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

LapsaItem itemAt(const QString& path, TimePoint expiresAt, bool locked)
{
    return {.id = newItemId(),
            .path = path,
            .displayName = u"x"_s,
            .addedAt = distantPast,
            .expiresAt = expiresAt,
            .locked = locked};
}

LapsaRecoveryItem recordAt(const QString& recoveryPath, TimePoint purgeAfter, const QString& originalPath)
{
    return {.id = QUuid::createUuid(),
            .originalPath = originalPath,
            .recoveryPath = recoveryPath,
            .displayName = u"x"_s,
            .deletedAt = distantPast,
            .purgeAfter = purgeAfter};
}

void startWith(StoreWorld& world, const QList<LapsaRecoveryItem>& records, const QList<LapsaItem>& items)
{
    world.home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(items));
    world.home.writeDataFile(u"recovery.json"_s, JSONEncoder::lapsa().encode(records));
    world.start();
    world.letSavesPass();
}

void setDisposal(StoreWorld& world, bool useRecoveryWindow, bool useTrash)
{
    world.changeSettings([=](LapsaSettings& settings) {
        settings.useRecoveryWindow = useRecoveryWindow;
        settings.useTrash = useTrash;
    });
}

void expire(StoreWorld& world)
{
    world.time.advance(24h);
    world.store().deleteExpiredItems();
}

LapsaRecoveryItem park(StoreWorld& world, const QString& relative, const QByteArray& content)
{
    world.store().deleteNow(world.add(world.home.makeFile(relative, content)));
    world.letSavesPass();
    return world.store().recoveryItems().last();
}

void watch(StoreWorld& world, const std::function<void(LapsaAutoCleanFolderRule&)>& change)
{
    constexpr TimePoint longAgo = std::chrono::sys_days{std::chrono::year{2000} / 1 / 1};
    LapsaAutoCleanFolderRule rule{.folderPath = world.home.makeFolder(u"watched"_s), .createdAt = longAgo};
    if (change) {
        change(rule);
    }
    world.changeSettings([&](LapsaSettings& settings) { settings.autoCleanFolders.push_back(rule); });
}

QList<QUrl> urlsOf(const QStringList& paths)
{
    QList<QUrl> urls;
    for (const QString& path : paths) {
        urls += QUrl::fromLocalFile(path);
    }
    return urls;
}

} // namespace lapsa::test
