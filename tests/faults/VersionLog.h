// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <cstddef>
#include <cstdint>

namespace lapsa::test {

/// The versions that each of the three files may hold, told by a running program to the one who watches it: it lies in
/// memory that both share and that outlives a kill.
class VersionLog final
{
public:
    enum File
    {
        Settings,
        State,
        Recovery,
    };

    static constexpr std::size_t files = 3;

    [[nodiscard]] static VersionLog& shared();

    void clear();

    /// From now on the file may hold these bytes. Those of the version before are not noted again.
    void note(File file, QByteArrayView bytes);
    /// From now on the file holds the newest version, or a later one.
    void promise();

    /// While a program starts it may put defaults in the place of what it cannot read, before anybody could tell.
    void setStarting(bool starting) { m_starting = starting; }

    [[nodiscard]] bool starting() const { return m_starting; }

    /// A start could not read the list of records, and replaced it.
    void setRecordsLost() { m_recordsWereLost = true; }

    [[nodiscard]] bool recordsWereLost() const { return m_recordsWereLost; }

    [[nodiscard]] std::size_t count(File file) const { return m_versions.at(file).count; }

    /// Whether the newest version holds these bytes.
    [[nodiscard]] bool isNewest(File file, QByteArrayView bytes) const;
    /// Whether these bytes were noted.
    [[nodiscard]] bool knows(File file, QByteArrayView bytes) const;
    /// Whether they are the newest version at the last promise, or a later one.
    [[nodiscard]] bool keepsPromise(File file, QByteArrayView bytes) const;

private:
    VersionLog() = default;

    static constexpr std::size_t mostVersions = 128;
    using Digest = std::array<char, 20>;

    struct Versions
    {
        std::array<Digest, mostVersions> digests{};
        std::size_t count = 0;
        std::size_t promised = 0;
    };

    [[nodiscard]] static Digest digestOf(QByteArrayView bytes);
    [[nodiscard]] bool holds(File file, QByteArrayView bytes, std::size_t from) const;

    std::array<Versions, files> m_versions{};
    bool m_starting = false;
    bool m_recordsWereLost = false;
};

} // namespace lapsa::test
