// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "FileIdentity.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lapsa {

/// Copies whose originals are gone, but perhaps not yet on the disk: after a power cut they would be there again. Until
/// that is sure, the copies keep their marks.
class UnsettledCopies final
{
public:
    UnsettledCopies() = default;
    UnsettledCopies(const UnsettledCopies&) = delete;
    UnsettledCopies& operator=(const UnsettledCopies&) = delete;

    ~UnsettledCopies() { settle(); }

    /// `original` is where the original was. Waits for the disks now and then, so that not too many are kept.
    void add(const AtPath& copy, const AtPath& original);

    /// Waits for the disks of the originals, once for each folder, and takes the marks off the copies. They stay where
    /// that fails: the next start looks again.
    void settle();

private:
    struct Copy
    {
        QByteArray name;
        std::uint64_t inode = 0;
    };

    /// Copies that went from one folder to another.
    struct Group
    {
        SharedDescriptor from;
        SharedDescriptor to;
        FileIdentity fromIdentity;
        FileIdentity toIdentity;
        std::vector<Copy> copies;
    };

    [[nodiscard]] Group& groupOf(const AtPath& copy, const AtPath& original);

    std::vector<Group> m_groups;
    std::size_t m_count = 0;
};

} // namespace lapsa
