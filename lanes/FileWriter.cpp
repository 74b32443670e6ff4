// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileWriter.h"

#include "FileSystem.h"
#include "LaneJob.h"
#include "Lanes.h"

#include <QFileInfo>

#include <tuple>
#include <utility>

namespace lapsa {

namespace {

const QString laneName = QStringLiteral("Lapsa's own files");

} // namespace

FileWriter::FileWriter(Lanes& lanes)
    : m_lanes(lanes)
{}

void FileWriter::write(const QString& path, Content content, Failure failure)
{
    if (const auto last = m_last.value(path).job) {
        last->stop(); // a write that has begun ignores this: half a file is useless
    }
    const auto begun = std::make_shared<std::atomic<bool>>(false);
    const auto job = m_lanes.runOn(
        laneName,
        [path, begun, content = std::move(content), failure = std::move(failure)](LaneJob&) -> Lanes::Report {
            *begun = true;
            // If this fails, the write reports why.
            std::ignore = fileSystem::createDirectory(QFileInfo(path).path(), fileSystem::Access::OwnerOnly);
            const Result<void> written = fileSystem::writeAtomically(path, content());
            if (written) {
                return {};
            }
            return [failure, error = written.error()] { failure(error); };
        },
        Lanes::AtTheEnd::Run);
    m_last[path] = {.job = job, .begun = begun};
}

bool FileWriter::isWaiting(const QString& path) const
{
    const auto last = m_last.constFind(path);
    return last != m_last.cend() && !*last->begun;
}

bool FileWriter::flush(std::chrono::milliseconds patience)
{
    return m_lanes.await(laneName, patience);
}

} // namespace lapsa
