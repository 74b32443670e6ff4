// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"

#include <QByteArray>

#include <cstdint>

namespace lapsa {

/// The names that an entry may get in a trash folder, one after the other: its own first, then with a growing number.
class TrashName final
{
public:
    TrashName(const FileIdentity& trash, const QByteArray& wanted);

    [[nodiscard]] const QByteArray& current() const { return m_current; }

    void advance();

    /// The current name was taken: the next entry of the same name in the same trash starts behind it. Without that,
    /// many entries of one name would each try all names before theirs.
    void remember() const;

private:
    [[nodiscard]] QByteArray numbered() const;

    QByteArray m_key;
    QByteArray m_wanted;
    std::uint64_t m_number = 1;
    QByteArray m_current;
};

} // namespace lapsa
