// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QSet>
#include <QString>

#include <cstdint>
#include <optional>

namespace lapsa {

/// The longest name that a file system takes, in bytes of UTF-8 (NAME_MAX).
inline constexpr qsizetype maxFileNameBytes = 255;

/// The n-th variant of a file name: "report-2.pdf" of "report.pdf", "Notes-2" of "Notes"; the name itself for 0. A base
/// that would make the name too long is shortened from its end.
[[nodiscard]] QString fileNameVariant(const QString& name, std::int64_t number);

/// Finds free names for a run of moves, in time that does not depend on how many equal names there are: a folder is
/// looked at once, at the first name found taken, and what the moves add is remembered. A look can be out of date, so a
/// free name is only a proposal until a move that never overwrites has confirmed it.
class FreeNames final
{
public:
    /// The path itself, until a name in its folder was found taken; from then on its first free variant there.
    [[nodiscard]] QString uniquePath(const QString& path);

    /// From now on `path` counts as taken.
    void markTaken(const QString& path);

    /// A move found `proposal`, the answer for `wanted`, taken after all: the next answer is another one.
    void reject(const QString& wanted, const QString& proposal);

private:
    struct Folder
    {
        /// Nothing when the folder cannot be listed: then every candidate is looked at by itself.
        std::optional<QSet<QString>> names;
        /// For each name the variant from which on to look.
        QHash<QString, std::int64_t> nextVariant;
    };

    [[nodiscard]] Folder& listed(const QString& folder);

    QHash<QString, Folder> m_folders;
};

} // namespace lapsa
