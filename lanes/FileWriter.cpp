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
    if (const auto last = m_last.value(path)) {
        last->stop(); // a write that has begun ignores this: half a file is useless
    }
    m_last[path] = m_lanes.runOn(
        laneName,
        [path, content = std::move(content), failure = std::move(failure)](LaneJob&) -> Lanes::Report {
            // If this fails, the write reports why.
            std::ignore = fileSystem::createDirectory(QFileInfo(path).path(), fileSystem::Access::OwnerOnly);
            const Result<void> written = fileSystem::writeAtomically(path, content());
            if (written) {
                return {};
            }
            return [failure, error = written.error()] { failure(error); };
        },
        Lanes::AtTheEnd::Run);
}

bool FileWriter::flush(std::chrono::milliseconds patience)
{
    return m_lanes.await(laneName, patience);
}

} // namespace lapsa
