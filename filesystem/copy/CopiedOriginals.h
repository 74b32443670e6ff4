// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EntryCopy.h"
#include "SourceFile.h"

#include <optional>

namespace lapsa {

/// The original files of a copied folder, while they are being removed. Removes only as many names of a file as were
/// copied: a listing can end early without an error, because the C library takes ENOENT for its end.
class CopiedOriginals final
{
public:
    explicit CopiedOriginals(CopiedFiles files)
        : m_files(std::move(files))
    {}

    /// Whether an entry is a copied file, unchanged since, that nobody is writing to. Remove it before asking about the
    /// next one.
    [[nodiscard]] bool mayGo(int folder, const char* name);

private:
    void settleLast();

    CopiedFiles m_files;
    /// The last file, which may have more names: removing one changes its status, which must not count as a change by
    /// others.
    std::optional<SourceFile> m_last;
    FileIdentity m_lastIdentity;
};

} // namespace lapsa
