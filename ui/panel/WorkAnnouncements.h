// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemWork.h"
#include "Time.h"

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace lapsa {

/// Decides what a screen reader says by itself about the work on files: when the work on an item begins, then at every
/// quarter of it; if its end is not known, now and then. At most one sentence every ten seconds.
class WorkAnnouncements final
{
public:
    struct Worked
    {
        QString id;
        QString displayName;
        ItemWork work;
    };

    /// What to say now about the work that is on the screen, if anything.
    [[nodiscard]] std::optional<QString> next(const QList<Worked>& works, TimePoint now);

private:
    struct Said
    {
        ItemWork::Kind kind = ItemWork::Kind::Moving;
        /// Of the whole; nothing if the end was not known.
        std::optional<int> quarter;
        std::int64_t done = 0;

        friend bool operator==(const Said&, const Said&) = default;
    };

    [[nodiscard]] static Said saidOf(const ItemWork& work);

    QHash<QString, Said> m_said;
    std::optional<TimePoint> m_lastTime;
};

} // namespace lapsa
