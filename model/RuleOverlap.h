// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaFileTypeRule.h"

#include <QList>
#include <QString>

namespace lapsa {

/// An extension of a rule that never applies to it, because an earlier enabled rule lists the extension too.
struct TakenExtension
{
    /// In lower case, with its leading dot.
    QString extension;
    /// The position of the earlier rule.
    qsizetype rule = 0;

    friend bool operator==(const TakenExtension&, const TakenExtension&) = default;
};

/// The extensions of the rule at `position` that earlier rules have, in the order of its text, each once. None if the
/// rule is disabled.
[[nodiscard]] QList<TakenExtension> takenExtensions(const QList<LapsaFileTypeRule>& rules, qsizetype position);

} // namespace lapsa
