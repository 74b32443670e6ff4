// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "FileName.h"
#include "FileTree.h"
#include "FuzzTarget.h"
#include "JSONEncoder.h"
#include "StoreWorld.h"

#include <QFile>

namespace lapsa::fuzz {

using namespace Qt::StringLiterals;

namespace {

constexpr int files = 2;

QList<LapsaItem> expiredItems(const test::TemporaryHome& home, const QString& displayName)
{
    QList<LapsaItem> items;
    for (int number = 0; number < files; ++number) {
        const QString path = home.makeFile(u"files/"_s + QString::number(number));
        items.push_back({.id = newItemId(),
                         .path = path,
                         .displayName = displayName,
                         .addedAt = distantPast,
                         .expiresAt = distantPast});
    }
    return items;
}

} // namespace

/// The real store disposes of two real files, whose display name, as an edited list may hold it, is the input.
void run(QByteArrayView input)
{
    static test::StoreWorld world(false);
    const QString displayName = QString::fromUtf8(input);
    world.home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(expiredItems(world.home, displayName)));
    world.start();
    demand(world.store().items().size() == files, "the list is read");
    demand(world.store().items().constFirst().displayName == displayName, "the display name is read as it was");

    world.store().deleteExpiredItems();

    const QList<LapsaRecoveryItem> records = world.store().recoveryItems();
    const QString recovery = AppPaths::recoveryDirectory().toLocalFile();
    demand(records.size() == files, "every file has its record");
    demand(test::rawNames(recovery).size() == files, "every file is in the recovery folder");
    demand(test::rawNames(world.home.path(u"files"_s)).isEmpty(), "no file is left where it was");
    demand(test::rawNames(world.home.path({})) == QList<QByteArray>({".local", "files"}), "nothing is anywhere else");
    for (const LapsaRecoveryItem& record : records) {
        demand(parentPath(record.recoveryPath) == recovery, "a record leads into the recovery folder");
        demand(QFile::exists(record.recoveryPath), "a record leads to its copy");
        world.store().deleteRecoveryItem(record);
    }
    demand(test::rawNames(recovery).isEmpty(), "what is deleted by hand is gone");
    world.stop();
}

} // namespace lapsa::fuzz
