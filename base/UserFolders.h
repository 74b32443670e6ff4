// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace lapsa::userFolders {

/// The folders that hold the data of the user's applications, the preferred one first: `$XDG_DATA_HOME` if it is set to
/// an absolute path, else `~/.local/share`. Empty if the user has no home folder. Creates nothing.
[[nodiscard]] QStringList applicationSupport();

/// The folder for the state data of applications: `$XDG_STATE_HOME` if it is set to an absolute path, else
/// `~/.local/state`. Empty if the user has no home folder. Creates nothing.
[[nodiscard]] QString applicationState();

/// The desktop's download folder. Empty if it does not exist or is the home folder itself.
[[nodiscard]] QString downloads();

/// All paths of the user's home folder: `$HOME` and the one in the user database.
[[nodiscard]] QStringList home();

} // namespace lapsa::userFolders
