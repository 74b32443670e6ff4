// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Campaign.h"

#include <array>
#include <cstddef>

namespace lapsa::test {

/// What several workers found out, in memory that they share.
class Tally final
{
public:
    static constexpr std::size_t mostRows = 96;

    [[nodiscard]] static Tally& shared();

    /// Adds what a worker found in a row. The calls are those of one run and are not added up.
    void add(std::size_t row, const Figures& figures);

    [[nodiscard]] const Figures& row(std::size_t row) const { return m_rows.at(row); }

private:
    Tally() = default;

    std::array<Figures, mostRows> m_rows{};
};

} // namespace lapsa::test
