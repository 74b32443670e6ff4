// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaFileTypeRule.h"

#include <QList>
#include <QString>
#include <QUuid>

/// The texts about file type rules.
namespace lapsa::ruleTexts {

/// "Already in “.zip,.rar” above: .zip", a line for each earlier rule that takes extensions of this one; empty if none
/// does.
[[nodiscard]] QString takenExtensions(const QList<LapsaFileTypeRule>& rules, const QUuid& id);

/// "Rule 2 of 5", for a position counted from 0.
[[nodiscard]] QString position(qsizetype position, qsizetype count);

/// "Apply to 3 listed items"
[[nodiscard]] QString apply(qsizetype count);

/// "3 items have the new time"
[[nodiscard]] QString applied(qsizetype count);

} // namespace lapsa::ruleTexts
