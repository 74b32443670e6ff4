// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>

namespace lapsa {

/// Where Lapsa keeps its data. Every path is determined anew at each call.
struct AppPaths
{
    /// The data folder "Lapsa". Created (mode 0700) if it is missing; a failure shows up later, as a failed read or
    /// write. If the user has no data home, the process ends: that is an error of the system.
    [[nodiscard]] static QUrl applicationSupportDirectory();
    /// The folder "Recovery" in it, created in the same way.
    [[nodiscard]] static QUrl recoveryDirectory();

    /// The folder "Lapsa" for copies of unreadable files, in the user's state folder; empty if there is none. Creates
    /// nothing.
    [[nodiscard]] static QString keptFilesFolder();

    // The three files. Asking for a path creates the data folder, never the file.

    [[nodiscard]] static QUrl settingsURL();
    [[nodiscard]] static QUrl stateURL();
    [[nodiscard]] static QUrl recoveryStateURL();

    /// Lists the copies that are being moved back to other file systems; exists only during such a restore.
    [[nodiscard]] static QUrl restoringURL();

    /// What is known about the listed paths that other users could redirect. Not in the data folder, because it applies
    /// only to this machine.
    [[nodiscard]] static QUrl knownPathsURL();
};

} // namespace lapsa
