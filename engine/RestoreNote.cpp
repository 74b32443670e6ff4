// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RestoreNote.h"

#include "AppPaths.h"
#include "FileBatch.h"
#include "FileName.h"
#include "FileSystem.h"
#include "InterruptedCopies.h"
#include "JSONDecoder.h"
#include "JSONEncoder.h"

#include <QList>
#include <QSet>

#include <mutex>
#include <tuple>

namespace lapsa::restoreNote {

using namespace Qt::StringLiterals;

namespace {

QString path()
{
    return AppPaths::restoringURL().toLocalFile();
}

/// One change after the other: restores run on several lanes.
std::mutex& changing()
{
    static std::mutex mutex;
    return mutex;
}

QList<LapsaRecoveryItem> stored()
{
    const Result<QByteArray> bytes = fileSystem::read(path());
    return bytes
               ? JSONDecoder::lapsa().decodeList<LapsaRecoveryItem>(bytes.value()).value_or(QList<LapsaRecoveryItem>())
               : QList<LapsaRecoveryItem>();
}

// A failure is silent on purpose: at worst, a start looks for leftovers for nothing, or does not find them.
void save(const QList<LapsaRecoveryItem>& records)
{
    if (records.isEmpty()) {
        fileSystem::Batch batch({.folder = AppPaths::applicationSupportDirectory().toLocalFile()});
        std::ignore = batch.remove(path());
    } else {
        std::ignore = fileSystem::writeAtomically(path(), JSONEncoder::lapsa().encode(records));
    }
}

QList<LapsaRecoveryItem> without(QList<LapsaRecoveryItem> records, const QList<LapsaRecoveryItem>& others)
{
    QSet<QUuid> ids;
    for (const LapsaRecoveryItem& other : others) {
        ids.insert(other.id);
    }
    records.removeIf([&ids](const LapsaRecoveryItem& record) { return ids.contains(record.id); });
    return records;
}

} // namespace

void write(const QList<LapsaRecoveryItem>& records)
{
    const std::lock_guard lock(changing());
    save(without(stored(), records) + records);
}

void drop(const QList<LapsaRecoveryItem>& records)
{
    if (records.isEmpty()) {
        return;
    }
    const std::lock_guard lock(changing());
    save(without(stored(), records));
}

QList<LapsaRecoveryItem> noted(TimePoint now)
{
    const std::lock_guard lock(changing());
    bool found = false;
    const auto listed =
        fileSystem::forEachName(AppPaths::applicationSupportDirectory().toLocalFile(),
                                [&found](const QString& name) { found = found || name.contains("restoring.json"_L1); });
    if (!listed || !found) {
        return {};
    }
    const QList<LapsaRecoveryItem> all = stored();
    // A write also removes what an earlier, interrupted write has left.
    std::ignore = fileSystem::writeAtomically(path(), JSONEncoder::lapsa().encode(all));
    QList<LapsaRecoveryItem> left = all;
    left.removeIf([now](const LapsaRecoveryItem& record) { return record.purgeAfter <= now; });
    save(left);
    return all;
}

void removeLeftoversOf(const LapsaRecoveryItem& record, const std::function<void()>& finish)
{
    const QString folder = parentPath(record.originalPath);
    if (fileSystem::isDirectory(folder)) {
        fileSystem::removeInterruptedCopies(folder);
        finish();
        drop({record});
    }
}

} // namespace lapsa::restoreNote
