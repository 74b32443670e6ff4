// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace lapsa::test {

class TemporaryHome;

} // namespace lapsa::test

namespace lapsa::bench {

struct Sizes
{
    std::int64_t items = 100'000;
    std::int64_t tree = 200'000;
    std::int64_t fullBytes = std::int64_t{2} << 30;
};

/// What is on disk when the program starts, and until when it has to do with it.
struct Prepared
{
    /// Asked a few times a second while the program runs. Also lets a disk die, or answer again.
    std::function<bool()> isOver;
    /// Mounts and files outside the home, which go with it.
    std::shared_ptr<void> keeps = nullptr;
};

/// What a running program is to work on. Everything that is due is due at the start.
struct Situation
{
    QString name;
    std::function<Prepared(const test::TemporaryHome& home)> prepare;
};

/// All of them; those with a disk that stops answering only where there can be one.
[[nodiscard]] std::vector<Situation> situations(const Sizes& sizes);

/// An empty list, and what could delay a start: many items, items on a dead disk, and a large file that is due.
[[nodiscard]] std::vector<Situation> startSituations();

} // namespace lapsa::bench
