// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileCount.h"

#include <QString>

#include <optional>

namespace lapsa {

struct AddResult;
class LapsaStore;

/// The message about an add: what was refused and why, and what it means that a folder was added. Empty if neither
/// happened. The files of all new folders are counted together, within these limits.
[[nodiscard]] std::optional<QString> addMessage(const AddResult& result, const fileSystem::CountLimits& limits);

/// Sets this message in the store; if folders were added, when a lane has counted their files for at most a tenth of a
/// second. An add that puts something on countdown clears the store's message, so call this after it.
void showAddMessage(LapsaStore& store, const AddResult& result);

} // namespace lapsa
