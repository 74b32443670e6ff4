// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QUuid>

namespace lapsa {

/// A new random (version 4) UUID. It identifies a record and is not a secret.
[[nodiscard]] QUuid randomUuid();

/// The canonical text of a UUID in upper case.
[[nodiscard]] QString upperCaseText(const QUuid& uuid);

} // namespace lapsa
