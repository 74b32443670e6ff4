// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryFolder.h"

#include "AppPaths.h"
#include "FileName.h"
#include "FileSystem.h"
#include "InterruptedCopies.h"

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// How the path of every Recovery folder ends.
constexpr QLatin1StringView ending = "/Lapsa/Recovery"_L1;

} // namespace

RecoveryFolder::RecoveryFolder()
    : m_path(AppPaths::recoveryDirectory().toLocalFile())
    , m_folder(m_path)
{}

void RecoveryFolder::removeInterruptedCopies()
{
    fileSystem::removeInterruptedCopies(AppPaths::recoveryDirectory().toLocalFile());
}

std::optional<QString> RecoveryFolder::nameOf(const QString& recoveryPath)
{
    const std::optional<QString> path = fileSystem::standardizedPath(recoveryPath);
    if (!path || *path == u"/" || !isThis(parentPath(*path))) {
        return std::nullopt;
    }
    return lastPathComponent(*path);
}

bool RecoveryFolder::isThis(const QString& folder)
{
    if (folder == m_path || folder.endsWith(ending)) {
        return true;
    }
    const auto known = m_asked.constFind(folder);
    if (known != m_asked.cend()) {
        return *known;
    }
    const auto own = m_folder.identity();
    const auto other = fileSystem::HeldFolder(folder).identity();
    return *m_asked.insert(folder, own && other && own.value() == other.value());
}

} // namespace lapsa
