// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "EntryCopy.h"
#include "SourceFile.h"

#include <QByteArray>

#include <optional>

namespace lapsa {

/// The original files of a copied folder, while they are being removed. Removes only as many names of a file as were
/// copied: a listing can end early without an error, because the C library takes ENOENT for its end.
class CopiedOriginals final
{
public:
    struct Folders
    {
        const AtPath& from;
        const AtPath& to;
    };

    CopiedOriginals(CopiedFiles files, const Folders& folders, CopyProgress& progress);
    CopiedOriginals(const CopiedOriginals&) = delete;
    CopiedOriginals& operator=(const CopiedOriginals&) = delete;

    /// Waits for who may be writing to the last file.
    ~CopiedOriginals() { settleLast(); }

    /// Whether an entry is a copied file, unchanged since, that nobody is writing to. Remove it before asking about the
    /// next one.
    [[nodiscard]] bool mayGo(int folder, const char* name);

private:
    void settleLast();
    void followWriter();

    CopiedFiles m_files;
    /// Of the folder of the originals.
    QByteArray m_path;
    AtPath m_copy;
    CopyProgress& m_progress;
    /// The last file, which may have more names: removing one changes its status, which must not count as a change by
    /// others.
    std::optional<SourceFile> m_last;
    FileIdentity m_lastIdentity;
};

} // namespace lapsa
