// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EntryCopy.h"
#include "SourceFile.h"

#include <optional>

namespace lapsa {

/// The files of a folder that was copied, while they are removed. Of a file as many names go as were copied: a listing
/// can end early without a failure, since the C library takes ENOENT for its end.
class CopiedOriginals final
{
public:
    explicit CopiedOriginals(CopiedFiles files)
        : m_files(std::move(files))
    {}

    /// Whether an entry is a copied file, still is as it was then, and nobody is writing to it. It has to be removed
    /// before the next one is asked for.
    [[nodiscard]] bool mayGo(int folder, const char* name);

private:
    void settleLast();

    CopiedFiles m_files;
    /// A file with more names: the removal of one changes its status, which is not to be taken for a change by others.
    std::optional<SourceFile> m_last;
    FileIdentity m_lastIdentity;
};

} // namespace lapsa
