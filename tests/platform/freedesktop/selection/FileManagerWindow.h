// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileManagerSelection.h"
#include "HelperProcess.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// What a user does with the file managers of desktops.

namespace lapsa::test {

/// A file manager of the desktop.
struct FileManagerProgram
{
    QString command;
    QStringList options;
    /// Of its windows.
    QString windowClass;
    /// Whether it keeps the bytes of a name that is not UTF-8, which then has no path.
    bool keepsBytes = true;
    /// Small enough to be installed, and tried, with every run of the tests.
    bool inEveryRun = false;
};

[[nodiscard]] const QList<FileManagerProgram>& fileManagerPrograms();

void xdotool(const QStringList& arguments);

/// An answer in words.
[[nodiscard]] QByteArray told(const FileManagerSelection::Answer& answer);
/// The paths in an order of their own; the entries without one first.
[[nodiscard]] QStringList sortedPaths(const FileManagerSelection::Answer& answer);

/// A file manager with a window on the display of the test.
class FileManagerWindow final
{
public:
    /// Starts it with the folder.
    FileManagerWindow(const FileManagerProgram& program, const QString& folder);

    /// Waits for the window, for so many milliseconds. False if there is none.
    [[nodiscard]] bool appears(int patience) const;

    void clickInTheView();
    void selectAll();

private:
    QString m_class;
    HelperProcess m_process;
    int m_clickPlace = 0;
};

} // namespace lapsa::test
