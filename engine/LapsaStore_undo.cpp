// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "LaneJob.h"
#include "Lanes.h"
#include "LapsaStore.h"
#include "SystemLog.h"
#include "TrashReturn.h"

namespace lapsa {

using namespace Qt::StringLiterals;

void LapsaStore::takeBackFromTrash(const Deletion& deletion, const std::function<void(const Result<QString>&)>& done)
{
    if (!deletion.trashed) {
        return;
    }
    const auto work = [path = deletion.item.path, trashed = *deletion.trashed, done,
                       store = QPointer(this)](LaneJob&) -> Lanes::Report {
        fileSystem::Batch batch({.folder = AppPaths::applicationSupportDirectory().toLocalFile()});
        return [result = takeBack(batch, trashed, path), done, store] {
            if (!result) {
                systemLog(u"Lapsa failed to take back from the Trash: "_s + result.error().description);
            }
            if (store && done) {
                done(result);
            }
        };
    };
    m_environment.lanes.run(deletion.item.path, work);
}

} // namespace lapsa
