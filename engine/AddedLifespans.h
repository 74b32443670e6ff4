// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaStore.h"
#include "LifespanRules.h"

#include <algorithm>

namespace lapsa {

/// The lifespans of the files in one add, prepared for many look-ups.
class AddedLifespans final
{
public:
    AddedLifespans(const LapsaSettings& settings, const LapsaStore::AddOptions& options)
        : m_rules(settings)
        , m_byRules(options.applyFileTypeRules && !options.fixedLifespan)
        , m_flat(options.fixedLifespan.value_or(settings.defaultExpirationMinutes))
    {}

    /// Minutes, at least 1. No upper bound here, on purpose: a given lifespan is used as it is. Only rule look-ups are
    /// bounded.
    [[nodiscard]] std::int64_t minutesFor(const QString& fileName, bool isDirectory) const
    {
        return std::max<std::int64_t>(m_byRules && !isDirectory ? m_rules.lifespanFor(fileName) : m_flat, 1);
    }

private:
    LifespanRules m_rules;
    bool m_byRules;
    std::int64_t m_flat;
};

} // namespace lapsa
