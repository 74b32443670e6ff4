// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaRecoveryItem.h"
#include "Time.h"

#include <QString>

#include <cstdint>
#include <optional>

/// What the Recovery window says of a file.
namespace lapsa::recoveryTexts {

/// A path with "~" for the user's home folder.
[[nodiscard]] QString shortPath(const QString& path);

/// "from ~/Downloads"; for a file without a record, whose old place nobody knows: "comes back to ~/Downloads".
[[nodiscard]] QString originText(const LapsaRecoveryItem& record, bool withoutRecord);

/// "removed in 23h 4min", rounded up to whole minutes; "removed soon" once that time is over, "kept until you take it"
/// without a record.
[[nodiscard]] QString remainingText(const LapsaRecoveryItem& record, bool withoutRecord, TimePoint now);

/// "3 files, 1.2 GB"; the size is left out while it is not known.
[[nodiscard]] QString countText(qsizetype files, std::optional<std::int64_t> bytes);
/// "3 selected, 1.2 GB".
[[nodiscard]] QString selectionText(qsizetype files, std::optional<std::int64_t> bytes);
/// "12 of 300 files".
[[nodiscard]] QString hitsText(qsizetype hits, qsizetype files);

} // namespace lapsa::recoveryTexts
