// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTest>

namespace lapsa::test {

/// How long a desktop may take to show what it was asked for, in milliseconds: a guard, on the slowest machine.
constexpr int desktopPatience = 60'000;

/// Looks at something that another program owns until the look has given `wanted` several times in a row, and returns
/// it; otherwise the last look, after `desktopPatience`. A window is out of sight for a moment while the window manager
/// takes it into a frame, and an icon while its taskbar lays itself out: one look, and one more to be sure, may differ.
template <class Look, class Answer>
[[nodiscard]] Answer settled(const Look& look, const Answer& wanted)
{
    constexpr int enough = 3;
    Answer last{};
    int seen = 0;
    // How it ended is told by what it saw.
    static_cast<void>(QTest::qWaitFor(
        [&] {
            last = look();
            seen = last == wanted ? seen + 1 : 0;
            return seen == enough;
        },
        desktopPatience));
    return last;
}

/// Whether `look` comes to be true and stays so, as `settled` has it.
template <class Look>
[[nodiscard]] bool comesTrue(const Look& look)
{
    return settled([&] { return bool(look()); }, true);
}

/// Whether `look` is true at each look within so many milliseconds.
template <class Look>
[[nodiscard]] bool settledFor(int milliseconds, const Look& look)
{
    return !QTest::qWaitFor([&] { return !bool(look()); }, milliseconds);
}

/// Whether `once` comes to be true within `desktopPatience`. It is not looked at again, so that it may act as well.
template <class Once>
[[nodiscard]] bool succeeds(const Once& once)
{
    return QTest::qWaitFor([&] { return bool(once()); }, desktopPatience);
}

} // namespace lapsa::test
