// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace lapsa {

/// Where a chooser is, and how the user came there. Absolute paths.
struct ChooserWay
{
    QString folder;
    QStringList back = {};
    QStringList forward = {};
    /// Whether the user navigated to the folder.
    bool byUser = false;

    /// The way to another folder.
    [[nodiscard]] ChooserWay to(const QString& other) const
    {
        return other == folder ? ChooserWay{.folder = folder, .back = back, .forward = forward, .byUser = true}
                               : ChooserWay{.folder = other, .back = back + QStringList{folder}, .byUser = true};
    }

    /// `back` must not be empty.
    [[nodiscard]] ChooserWay backward() const
    {
        return {.folder = back.constLast(),
                .back = back.first(back.size() - 1),
                .forward = forward + QStringList{folder},
                .byUser = true};
    }

    /// `forward` must not be empty.
    [[nodiscard]] ChooserWay onward() const
    {
        return {.folder = forward.constLast(),
                .back = back + QStringList{folder},
                .forward = forward.first(forward.size() - 1),
                .byUser = true};
    }
};

} // namespace lapsa
