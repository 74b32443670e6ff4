// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"

#include <QByteArray>

#include <cstdint>

namespace lapsa {

/// The possible names of an entry in a trash folder, in order: first its own name, then with increasing numbers.
class TrashName final
{
public:
    TrashName(const FileIdentity& trash, const QByteArray& wanted);

    [[nodiscard]] const QByteArray& current() const { return m_current; }

    void advance();

    /// Call this when the current name was used: the next entry of the same name in the same trash starts after it.
    /// Otherwise many entries of one name would each try all earlier names.
    void remember() const;

private:
    [[nodiscard]] QByteArray numbered() const;

    QByteArray m_key;
    QByteArray m_wanted;
    std::uint64_t m_number = 1;
    QByteArray m_current;
};

} // namespace lapsa
