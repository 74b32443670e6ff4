// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>

namespace lapsa {

/// Whether anything is mounted somewhere below a folder, which is named by its real path.
[[nodiscard]] Result<bool> hasMountBelow(const QByteArray& folder);

} // namespace lapsa
