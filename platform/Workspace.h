// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

class QUrl;

namespace lapsa {

/// The desktop's handling of files. Both requests complete later or never; failures are silent.
class Workspace
{
public:
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    /// Opens a file with its default application, or a folder in the file manager.
    virtual void open(const QUrl& url) = 0;
    /// Shows the file manager with the file or folder selected.
    virtual void reveal(const QUrl& url) = 0;
};

} // namespace lapsa
