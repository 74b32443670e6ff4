// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AtPath.h"
#include "FileSystem.h"
#include "FolderListing.h"
#include "KnownPathsCheck.h"
#include "SystemCalls.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <optional>
#include <utility>

namespace lapsa::fileSystem {

namespace {

/// An entry that asks the disk at most once about itself, and once per status() about a link's target.
class OpenFolderEntry final : public FolderEntry
{
public:
    OpenFolderEntry(int folder, const dirent& entry, QString name)
        : m_folder(folder)
        , m_entry(entry)
        , m_name(std::move(name))
    {}

    [[nodiscard]] const QString& name() const override { return m_name; }

    [[nodiscard]] Status status() const override
    {
        if (m_entry.d_type == DT_DIR) {
            return {.exists = true, .isDirectory = true};
        }
        const auto& self = itself();
        if (!self || !S_ISLNK(self->stx_mode)) {
            return {.exists = self.has_value(),
                    .isDirectory = self && S_ISDIR(self->stx_mode),
                    .isMountPoint = self && isMountPoint(*self)};
        }
        struct stat target = {};
        const int failed = retrying([&] { return ::fstatat(m_folder, m_entry.d_name, &target, 0); });
        return {.exists = failed == 0, .isDirectory = failed == 0 && S_ISDIR(target.st_mode)};
    }

    [[nodiscard]] std::optional<TimePoint> creationDate() const override
    {
        const auto& self = itself();
        if (!self || (self->stx_mask & STATX_BTIME) == 0) {
            return std::nullopt;
        }
        return TimePoint(std::chrono::seconds(self->stx_btime.tv_sec)) +
               std::chrono::microseconds(self->stx_btime.tv_nsec / 1000);
    }

private:
    const std::optional<struct statx>& itself() const
    {
        if (!m_asked) {
            m_asked = true;
            const Result<struct statx> found = statAt(m_folder, m_entry.d_name, STATX_TYPE | STATX_BTIME);
            if (found) {
                m_itself = found.value();
            }
        }
        return m_itself;
    }

    int m_folder;
    const dirent& m_entry;
    QString m_name;
    mutable bool m_asked = false;
    mutable std::optional<struct statx> m_itself;
};

Result<void> forEachVisibleIn(const QString& folder, const std::optional<PathSteps>& known,
                              const std::function<void(const FolderEntry&)>& visit)
{
    const Result<QByteArray> path = pathBytes(folder);
    if (!path) {
        return path.error();
    }
    const Result<WalkedFolder> walked = walkTo(path.value(), known ? WalkDetail::Steps : WalkDetail::Folder);
    if (!walked) {
        return walked.error();
    }
    if (known && !isKnownWay(*known, walked.value())) {
        return FileError::fromErrno(EACCES);
    }
    Result<FileDescriptor> opened = openAt(walked.value().folder.get(), ".", O_RDONLY | O_DIRECTORY);
    if (!opened) {
        return opened.error();
    }
    const int number = opened.value().get();
    const int error = forEachRawEntry(std::move(opened).value(), [&](const dirent& entry) {
        const bool visible = *entry.d_name != '.';
        const QString name = visible ? nameText(QByteArrayView(entry.d_name)) : QString();
        if (!name.isEmpty()) {
            visit(OpenFolderEntry(number, entry, name));
        }
        return true;
    });
    return error == 0 ? Result<void>() : FileError::fromErrno(error);
}

} // namespace

Result<void> forEachVisibleEntry(const QString& folder, const std::function<void(const FolderEntry&)>& visit)
{
    return forEachVisibleIn(folder, std::nullopt, visit);
}

Result<void> forEachVisibleEntry(const QString& folder, const KnownPaths& knownPaths,
                                 const std::function<void(const FolderEntry&)>& visit)
{
    return forEachVisibleIn(folder, knownPaths.stepsInto(folder), visit);
}

Result<void> forEachName(const QString& folder, const std::function<void(const QString&)>& visit)
{
    const Result<QByteArray> bytes = pathBytes(folder);
    if (!bytes) {
        return bytes.error();
    }
    Result<FileDescriptor> opened = openAt(AT_FDCWD, bytes.value().constData(), O_RDONLY | O_DIRECTORY);
    if (!opened) {
        return opened.error();
    }
    const int error = forEachRawEntry(std::move(opened).value(), [&](const dirent& entry) {
        const QString name = nameText(QByteArrayView(entry.d_name));
        if (!name.isEmpty()) {
            visit(name);
        }
        return true;
    });
    return error == 0 ? Result<void>() : FileError::fromErrno(error);
}

} // namespace lapsa::fileSystem
