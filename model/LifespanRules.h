// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaSettings.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace lapsa {

/// The normalised extensions of a rule's text, each in lower case with its leading dot. Commas, semicolons and spaces
/// separate them; pieces that are empty without their dot are dropped.
[[nodiscard]] QStringList extensionsOf(const QString& extensionsCSV);

/// The lifespans that the settings give to files, prepared for many look-ups.
class LifespanRules final
{
public:
    explicit LifespanRules(const LapsaSettings& settings);

    /// Minutes, 1 to 525600, for a file of that name: the first enabled rule that lists its extension applies, else the
    /// default. A file without an extension matches no rule.
    [[nodiscard]] std::int64_t lifespanFor(const QString& fileName) const;
    /// The id of the rule that applies to a file of that name, if one does.
    [[nodiscard]] std::optional<QUuid> ruleFor(const QString& fileName) const;

private:
    struct Applying
    {
        QUuid rule;
        std::int64_t minutes = 0;
    };

    [[nodiscard]] std::optional<Applying> applyingTo(const QString& fileName) const;

    /// By extension with its dot; the first rule that lists an extension applies.
    QHash<QString, Applying> m_byExtension;
    std::int64_t m_defaultLifespan;
};

} // namespace lapsa
