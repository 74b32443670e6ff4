// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HeldFolder.h"

#include <QHash>
#include <QString>

#include <optional>

namespace lapsa {

/// This Lapsa's own Recovery folder, held open. Whatever a record says, a copy is looked at, moved and removed in this
/// folder and nowhere else: a record can come from an edited list, or from a copy of another data folder.
class RecoveryFolder final
{
public:
    /// Opens the folder, which is created where it is missing. One that cannot be opened holds nothing.
    RecoveryFolder();

    /// Removes what moves into the folder from other file systems left behind when the process ended. For the start,
    /// before anything else may move a file there.
    static void removeInterruptedCopies();

    [[nodiscard]] const fileSystem::HeldFolder& held() const { return m_folder; }

    /// The name in this folder of the copy that a record means; nothing for one that means another place. A path into
    /// the Recovery folder of another data folder means the copy of that name here, so that a data folder can be moved
    /// or brought back from a backup.
    [[nodiscard]] std::optional<QString> nameOf(const QString& recoveryPath);

    /// The path of a copy, in the words of this Lapsa.
    [[nodiscard]] QString pathOf(const QString& name) const { return m_path + u'/' + name; }

private:
    [[nodiscard]] bool isThis(const QString& folder);

    QString m_path;
    fileSystem::HeldFolder m_folder;
    /// What was found out about other folders, by their paths.
    QHash<QString, bool> m_asked;
};

} // namespace lapsa
