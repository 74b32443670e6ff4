// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemWork.h"

#include <QString>

#include <optional>

/// What a row says and shows while a lane works on its file.
namespace lapsa::workTexts {

/// "Moving… 43 %", "Removing… 12,400 files" or "Waiting for the disk". A number that is not known is left out.
[[nodiscard]] QString textFor(const ItemWork& work);

/// The part that is done, 0 to 1; nothing if the total is not known.
[[nodiscard]] std::optional<double> progressOf(const ItemWork& work);

} // namespace lapsa::workTexts
