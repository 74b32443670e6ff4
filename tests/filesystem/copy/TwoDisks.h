// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileBatch.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QString>

namespace lapsa::test {

/// A home, and a file system of its own in its folder "other". Needs root: ask PrivateMounts::available() first.
struct TwoDisks final
{
    TwoDisks() { mounts.mountTemporary(there({})); }

    [[nodiscard]] QString there(const QString& name) const { return home.path(QStringLiteral("other/") + name); }

    /// Moves with no protection; 0 or the error's code.
    [[nodiscard]] static int move(const QString& from, const QString& to)
    {
        const Result<void> moved = fileSystem::Batch({}).move(from, to);
        return moved ? 0 : moved.error().code;
    }

    const TemporaryHome home;
    PrivateMounts mounts;
};

} // namespace lapsa::test
