// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace lapsa::userFolders {

/// The folders that hold the data of the user's applications, the preferred one first: `$XDG_DATA_HOME` where it is set
/// to an absolute path, else `~/.local/share`. Empty where the user has no home folder at all. Nothing is created.
[[nodiscard]] QStringList applicationSupport();

/// The folder for what applications note for themselves: `$XDG_STATE_HOME` where it is set to an absolute path, else
/// `~/.local/state`. Empty where the user has no home folder at all. Nothing is created.
[[nodiscard]] QString applicationState();

/// The folder that downloads go to, as the desktop has it. Empty where it does not exist, and where it is the home
/// folder itself.
[[nodiscard]] QString downloads();

/// Every path that counts as the user's home: `$HOME` and the one in the user database.
[[nodiscard]] QStringList home();

} // namespace lapsa::userFolders
