// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>

namespace lapsa {

/// Where Lapsa keeps its data. Every location is worked out anew at each use.
struct AppPaths
{
    /// The data folder "Lapsa". Created (mode 0700) when it is not there; a failure shows up later, as a failed read or
    /// write. A user without any data home is a programming error of the system around us and ends the process.
    [[nodiscard]] static QUrl applicationSupportDirectory();
    /// The folder "Recovery" in it, created in the same way.
    [[nodiscard]] static QUrl recoveryDirectory();

    /// The folder "Lapsa" for copies of what could not be read, in the user's folder for state; empty where there is
    /// none. Nothing is created.
    [[nodiscard]] static QString keptFilesFolder();

    // The three files. Asking for one creates the data folder, never the file.

    [[nodiscard]] static QUrl settingsURL();
    [[nodiscard]] static QUrl stateURL();
    [[nodiscard]] static QUrl recoveryStateURL();

    /// What notes the copies that are being put back to other file systems; there only while one is under way.
    [[nodiscard]] static QUrl restoringURL();

    /// What is remembered of the listed paths that other users can lead elsewhere. Not in the data folder: it says
    /// something about this machine only.
    [[nodiscard]] static QUrl knownPathsURL();
};

} // namespace lapsa
