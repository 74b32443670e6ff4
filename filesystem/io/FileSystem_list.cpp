// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileDescriptor.h"
#include "FileSystem.h"
#include "KnownPathsCheck.h"
#include "Place.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>
#include <memory>
#include <optional>

namespace lapsa::fileSystem {

namespace {

struct CloseFolder
{
    void operator()(DIR* folder) const { ::closedir(folder); }
};

using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

/// An entry that asks the disk at most once for itself, and once more only for where a link leads.
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
            const Result<struct statx> found = look(m_folder, m_entry.d_name, STATX_TYPE | STATX_BTIME);
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

bool isVisible(const char* name)
{
    return *name != '.';
}

bool isNoPoint(const char* name)
{
    return std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0;
}

/// Calls `visit` with the open folder, the entry and its name, for each entry that `wanted` and that has a name.
template <typename Wanted, typename Visit>
Result<void> forEachEntry(FileDescriptor opened, Wanted wanted, Visit visit)
{
    const OpenFolder folder(opened ? ::fdopendir(opened.get()) : nullptr);
    if (!folder) {
        return FileError::fromErrno(errno);
    }
    const int number = opened.release(); // the open folder closes it
    errno = 0;
    for (const dirent* entry = ::readdir(folder.get()); entry != nullptr; entry = ::readdir(folder.get())) {
        const QString name = wanted(entry->d_name) ? nameText(QByteArrayView(entry->d_name)) : QString();
        if (!name.isEmpty()) {
            visit(number, *entry, name);
        }
        errno = 0;
    }
    return errno == 0 ? Result<void>() : FileError::fromErrno(errno);
}

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
    const int number = walked.value().folder.get();
    FileDescriptor opened(retrying([&] { return ::openat(number, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    return forEachEntry(std::move(opened), isVisible, [&](int listed, const dirent& entry, const QString& name) {
        visit(OpenFolderEntry(listed, entry, name));
    });
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
    FileDescriptor opened(
        retrying([&] { return ::open(bytes.value().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    return forEachEntry(std::move(opened), isNoPoint, [&](int, const dirent&, const QString& name) { visit(name); });
}

} // namespace lapsa::fileSystem
