// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Spelling.h"

#include <QSet>
#include <QString>

#include <mutex>

namespace lapsa {

/// The names in Recovery that a lane is about to fill or to remove. A copy that has no record yet must not be taken for
/// an older one of the same name that is due. All members are thread-safe.
class RecoveryNames final
{
public:
    /// False if somebody else has claimed the name, in any spelling.
    [[nodiscard]] bool claim(const QString& name)
    {
        const QString folded = foldedSpelling(name);
        const std::lock_guard lock(m_mutex);
        const qsizetype before = m_names.size();
        m_names.insert(folded);
        return m_names.size() > before;
    }

    [[nodiscard]] bool isClaimed(const QString& name)
    {
        const QString folded = foldedSpelling(name);
        const std::lock_guard lock(m_mutex);
        return m_names.contains(folded);
    }

    void release(const QString& name)
    {
        const QString folded = foldedSpelling(name);
        const std::lock_guard lock(m_mutex);
        m_names.remove(folded);
    }

private:
    std::mutex m_mutex;
    QSet<QString> m_names;
};

} // namespace lapsa
