// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaSettings.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <cstdint>

namespace lapsa {

/// The normalised extensions of a rule's text, each in lower case with its leading full stop. Commas, semicolons and
/// blanks separate; what is left of a piece without its full stop must not be empty.
[[nodiscard]] QStringList extensionsOf(const QString& extensionsCSV);

/// The lifespans that the settings give to files, made ready for many files.
class LifespanRules final
{
public:
    explicit LifespanRules(const LapsaSettings& settings);

    /// Minutes, 1 to 525600, for a file of that name: those of the first enabled rule that lists its extension, else
    /// the default. A file without an extension matches no rule.
    [[nodiscard]] std::int64_t lifespanFor(const QString& fileName) const;

private:
    /// By extension with its full stop; the first rule that lists one has it.
    QHash<QString, std::int64_t> m_lifespans;
    std::int64_t m_defaultLifespan;
};

} // namespace lapsa
