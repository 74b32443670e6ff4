// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QSet>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

namespace lapsa {

class RecoveryNames;

/// The maximum length of a file name in UTF-8 bytes (NAME_MAX).
inline constexpr qsizetype maxFileNameBytes = 255;

/// The n-th variant of a file name: "report-2.pdf" for "report.pdf", "Notes-2" for "Notes"; the name itself for 0. If
/// the result would be too long, the end of the base is cut off.
[[nodiscard]] QString fileNameVariant(const QString& name, std::int64_t number);

/// Finds free names for a series of moves, in time that does not depend on how many equal names exist: a folder is
/// listed once, when a name in it is first found to be taken, and names that the moves add are remembered. A listing
/// can be out of date, so a free name is only a proposal until a move that never overwrites confirms it.
class FreeNames final
{
public:
    /// With `claims`, a name is free only if nobody else has claimed it.
    explicit FreeNames(std::shared_ptr<RecoveryNames> claims = nullptr)
        : m_claims(std::move(claims))
    {}

    /// The path itself, until a name in its folder was found to be taken; after that, its first free variant there.
    [[nodiscard]] QString uniquePath(const QString& path);

    /// Claims `proposal` before a move to it; false if somebody else has claimed it. A claim outlives this object.
    [[nodiscard]] bool claim(const QString& proposal) const;
    /// After a move that failed.
    void release(const QString& proposal) const;

    /// Marks `path` as taken.
    void markTaken(const QString& path);

    /// Reports that a move found `proposal`, the answer for `wanted`, to be taken. The next answer will be different.
    void reject(const QString& wanted, const QString& proposal);

private:
    struct Folder
    {
        /// Empty if the folder cannot be listed; then every candidate is checked on its own.
        std::optional<QSet<QString>> names;
        /// For each name, the number of the variant to try next.
        QHash<QString, std::int64_t> nextVariant;
    };

    [[nodiscard]] Folder& listed(const QString& folder);

    std::shared_ptr<RecoveryNames> m_claims;
    QHash<QString, Folder> m_folders;
};

} // namespace lapsa
