// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"

#include "CrossDeviceMove.h"
#include "FolderRemoval.h"
#include "HeldPlace.h"
#include "KnownPathsCheck.h"
#include "OpenedFolder.h"
#include "ProtectionCheck.h"
#include "TrashFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <span>
#include <tuple>
#include <utility>

namespace lapsa::fileSystem {

namespace {

Result<void> resultOf(int error)
{
    return error == 0 ? Result<void>() : FileError::fromErrno(error);
}

int takenBy(TrashFolder& trash, HeldPlace& held, const struct statx& status)
{
    const Result<QByteArray> folder = held.folderPath();
    if (!folder) {
        return folder.error().code;
    }
    return trash.contains(folder.value(), held.place(), status)
               ? EPERM
               : trash.take(folder.value(), held.place(), identityOf(status));
}

} // namespace

class Batch::Selection final
{
public:
    explicit Selection(const Protection& protection)
        : m_protection(protection)
    {}

    void expectTrash(QStringList paths);
    bool select(const QString& path);
    bool select(const FileDescriptor& folder, const QByteArray& name);
    [[nodiscard]] std::optional<EntryLook> selected() const;

    void announceLongWork(std::function<void(std::int64_t)> announce) { m_announce = std::move(announce); }

    int move(const QString& to);
    int moveToTrash();
    int remove();

private:
    int goTo(const QString& path);
    int look();

    int checkUnprotected() const
    {
        return m_error != 0 ? m_error : lapsa::checkUnprotected(place(), m_status, m_protection);
    }

    int rename();
    int moveToHomeTrash();
    Result<TrashFolder>& homeTrash();

    void announce() const;

    [[nodiscard]] const Place& place() const { return m_source.place(); }

    [[nodiscard]] FileIdentity identity() const { return identityOf(m_status); }

    Protection m_protection;
    HeldPlace m_source;
    HeldPlace m_destination;
    std::optional<Result<TrashFolder>> m_homeTrash;
    int m_homeTrashSharing = 0;
    QStringList m_expected;
    /// The selected one among them.
    qsizetype m_expectedPosition = 0;
    /// Of the selected entry: why it cannot be acted on, else how it looked.
    int m_error = ENOENT;
    struct statx m_status = {};
    std::function<void(std::int64_t)> m_announce;
};

void Batch::Selection::expectTrash(QStringList paths)
{
    m_expected = std::move(paths);
    m_expectedPosition = 0;
}

bool Batch::Selection::select(const QString& path)
{
    while (m_expectedPosition < m_expected.size() && m_expected.at(m_expectedPosition) != path) {
        ++m_expectedPosition;
    }
    m_error = goTo(path);
    if (m_error == ENOENT && m_source.isShared()) {
        // The folder may have got another name since it was opened.
        m_source.letGo();
        m_error = goTo(path);
    }
    if (m_error == 0 && !S_ISLNK(m_status.stx_mode)) {
        return true;
    }
    return exists(path);
}

bool Batch::Selection::select(const FileDescriptor& folder, const QByteArray& name)
{
    m_error = m_source.goTo(folder, name);
    m_error = m_error == 0 ? look() : m_error;
    return m_error == 0;
}

std::optional<EntryLook> Batch::Selection::selected() const
{
    return m_error == 0 ? std::optional(entryLook(place().folder.get(), m_status)) : std::nullopt;
}

void Batch::Selection::announce() const
{
    if (m_announce) {
        m_announce(isFolder(m_status) ? std::numeric_limits<std::int64_t>::max()
                                      : static_cast<std::int64_t>(m_status.stx_size));
    }
}

int Batch::Selection::goTo(const QString& path)
{
    const KnownPaths* const knownPaths = m_protection.knownPaths;
    const auto known = knownPaths != nullptr && !knownPaths->isEmpty() ? knownPaths->stepsTo(path) : std::nullopt;
    if (const int error = m_source.goTo(path, known ? WalkDetail::Steps : WalkDetail::Folder)) {
        return error;
    }
    const int error = look();
    return error == 0 && known && !isKnownPlace(*known, m_source) ? EACCES : error;
}

int Batch::Selection::look()
{
    const Result<struct statx> found =
        lapsa::look(place().folder.get(), place().name.constData(), STATX_BASIC_STATS | STATX_BTIME | STATX_MNT_ID);
    if (!found) {
        return found.error().code;
    }
    m_status = found.value();
    return 0;
}

int Batch::Selection::move(const QString& to)
{
    int error = m_destination.goTo(to);
    if (error == 0) {
        error = checkUnprotected();
    }
    if (error != 0) {
        return error;
    }
    error = rename();
    if (error == ENOENT && m_destination.isShared()) {
        m_destination.letGo();
        error = m_destination.goTo(to);
        error = error == 0 ? rename() : error;
    }
    if (error == EXDEV) {
        error = moveAcross(place(), m_status, m_destination.place(), [this] { announce(); });
        // That takes its time.
        m_destination.letGo();
        m_source.letGo();
    }
    return error;
}

int Batch::Selection::rename()
{
    const int error = renameWithoutReplacing(place(), m_destination.place());
    const bool failed = error != 0 && error != EXDEV;
    return failed && hasArrived(place(), identity(), m_destination.place()) ? 0 : error;
}

int Batch::Selection::moveToTrash()
{
    if (const int error = checkUnprotected()) {
        return error;
    }
    int error = moveToHomeTrash();
    if (error == ENOENT && m_homeTrashSharing > 1) {
        // Somebody removed it.
        m_homeTrash.reset();
        error = moveToHomeTrash();
    }
    if (error == EXDEV) {
        // Another volume, or another mount of the same one: it has a trash of its own.
        Result<TrashFolder> trash = TrashFolder::ofVolume(place());
        error = trash ? takenBy(trash.value(), m_source, m_status) : trash.error().code;
    }
    return error;
}

int Batch::Selection::moveToHomeTrash()
{
    Result<TrashFolder>& home = homeTrash();
    if (!home) {
        return home.error().code;
    }
    return home.value().isOnMountOf(m_status) ? takenBy(home.value(), m_source, m_status) : EXDEV;
}

Result<TrashFolder>& Batch::Selection::homeTrash()
{
    if (!m_homeTrash || !*m_homeTrash || m_homeTrashSharing == HeldPlace::mostSharing) {
        m_homeTrash.emplace(TrashFolder::home());
        m_homeTrashSharing = 0;
        const qsizetype expected = std::min<qsizetype>(m_expected.size() - m_expectedPosition, HeldPlace::mostSharing);
        if (*m_homeTrash && expected > 1) {
            m_homeTrash->value().prepare(
                std::span(m_expected).subspan(std::size_t(m_expectedPosition), std::size_t(expected)));
        }
    }
    ++m_homeTrashSharing;
    return *m_homeTrash;
}

int Batch::Selection::remove()
{
    if (const int error = checkUnprotected()) {
        return error;
    }
    if (!isFolder(m_status)) {
        return errorOf([&] { return ::unlinkat(place().folder.get(), place().name.constData(), 0); });
    }
    announce();
    const int error = FolderRemoval().run(place(), identity());
    m_source.letGo(); // it may have taken its time
    return error;
}

Batch::Batch(const Protection& protection)
    : m_selection(std::make_unique<Selection>(protection))
{}

Batch::~Batch() = default;

void Batch::expectTrash(QStringList paths)
{
    m_selection->expectTrash(std::move(paths));
}

bool Batch::select(const QString& path)
{
    return m_selection->select(path);
}

bool Batch::select(const HeldFolder& folder, const QString& name)
{
    const Result<QByteArray> bytes = entryName(name);
    return m_selection->select(folder.m_opened->folder, bytes ? bytes.value() : QByteArray());
}

std::optional<EntryLook> Batch::selected() const
{
    return m_selection->selected();
}

void Batch::announceLongWork(std::function<void(std::int64_t)> announce)
{
    m_selection->announceLongWork(std::move(announce));
}

Result<void> Batch::move(const QString& to)
{
    return resultOf(m_selection->move(to));
}

Result<void> Batch::moveToTrash()
{
    return resultOf(m_selection->moveToTrash());
}

Result<void> Batch::remove()
{
    return resultOf(m_selection->remove());
}

} // namespace lapsa::fileSystem
