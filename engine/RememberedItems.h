// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaItem.h"

#include <QList>

#include <vector>

namespace lapsa {

/// For each item of a list, the position of the same one, by id and path, among those that were remembered from an
/// earlier state of the list; -1 if it is not among them. Very fast if they are in the list's order.
[[nodiscard]] std::vector<qsizetype> positionsOfRemembered(const QList<LapsaItem>& list,
                                                           const QList<LapsaItem>& remembered);

} // namespace lapsa
