// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemWork.h"

#include <QString>

#include <optional>

/// What a row says and shows of the work of a lane on its file.
namespace lapsa::workTexts {

/// "Moving… 43 %", "Removing… 12,400 files", "Waiting for the disk" or "Stopped: 12,400 files left". A number that is
/// not known is left out.
[[nodiscard]] QString textFor(const ItemWork& work);

/// The part that is done, 0 to 1; nothing if the total is not known.
[[nodiscard]] std::optional<double> progressOf(const ItemWork& work);

} // namespace lapsa::workTexts
