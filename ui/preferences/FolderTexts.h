// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "WatchedFolder.h"

#include <QString>

#include <cstdint>

/// The texts on the card of a watched folder.
namespace lapsa::folderTexts {

/// At most this many files are counted; the text says so if the folder has more.
inline constexpr qsizetype mostFiles = 2000;

enum class Certainty
{
    /// What would happen if existing files were included.
    Would,
    /// Existing files are included: what happens at the next pass.
    Will,
};

/// "11 files here, 7 of them would go in 2h."
[[nodiscard]] QString existingFiles(const watchedFolder::Outlook& outlook, Certainty certainty);

/// "By the rules; other files 2h."
[[nodiscard]] QString byTheRules(std::int64_t defaultMinutes);

} // namespace lapsa::folderTexts
