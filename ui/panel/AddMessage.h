// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileCount.h"

#include <QString>

#include <optional>

namespace lapsa {

struct AddResult;
class LapsaStore;

/// What there is to say about an add: what was refused and why, and what it means that a folder was added. Nothing
/// where there is neither. The files of all the new folders are counted together, within these limits.
[[nodiscard]] std::optional<QString> addMessage(const AddResult& result, const fileSystem::CountLimits& limits);

/// Makes that the store's message, counting for a tenth of a second at most. Every add that puts something on countdown
/// clears the message, so this comes last.
void showAddMessage(LapsaStore& store, const AddResult& result);

} // namespace lapsa
