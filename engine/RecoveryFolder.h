// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HeldFolder.h"

#include <QHash>
#include <QString>

#include <optional>

namespace lapsa {

/// This Lapsa's own Recovery folder, kept open. Copies are looked up, moved and removed only in this folder, whatever a
/// record says: a record can come from an edited list or from a copy of another data folder.
class RecoveryFolder final
{
public:
    /// Opens the folder; creates it if it is missing. A folder that cannot be opened appears empty.
    RecoveryFolder();

    /// Removes partial copies that were left in the folder when the process ended during moves from other file systems.
    /// Call this at start, before anything else may move a file there.
    static void removeInterruptedCopies();

    [[nodiscard]] const fileSystem::HeldFolder& held() const { return m_folder; }

    /// The name in this folder of the copy that a record refers to; nothing if it refers to another place. A path into
    /// the Recovery folder of another data folder refers to the copy of that name here, so that a data folder can be
    /// moved or restored from a backup.
    [[nodiscard]] std::optional<QString> nameOf(const QString& recoveryPath);

    /// The path of a copy in this Lapsa's Recovery folder.
    [[nodiscard]] QString pathOf(const QString& name) const { return m_path + u'/' + name; }

private:
    [[nodiscard]] bool isThis(const QString& folder);

    QString m_path;
    fileSystem::HeldFolder m_folder;
    /// Answers already found, by path: whether a folder is this one.
    QHash<QString, bool> m_asked;
};

} // namespace lapsa
