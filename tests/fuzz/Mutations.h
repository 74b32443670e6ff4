// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>

#include <cstdint>

namespace lapsa::fuzz {

/// Inputs made of seeds by small damage: the same row of them for the same seeds.
class Mutations final
{
public:
    explicit Mutations(QList<QByteArray> seeds);

    /// A seed with one to four places changed.
    [[nodiscard]] QByteArray next();
    /// A seed of which one piece is there over and over again, so that time which grows too fast is felt.
    [[nodiscard]] QByteArray nextLong();

private:
    [[nodiscard]] qsizetype below(qsizetype bound);
    [[nodiscard]] QByteArray seed();
    void damage(QByteArray& bytes);

    QList<QByteArray> m_seeds;
    std::uint64_t m_state = 1;
};

} // namespace lapsa::fuzz
