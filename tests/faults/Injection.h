// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <optional>

namespace lapsa::test {

/// What is done to a running scenario: at its n-th call on files.
struct Injection
{
    enum class Kind
    {
        Nothing,
        KillBefore,
        KillAfter,
        /// Somebody ends the program while one of its threads stands before the call.
        End,
        /// The call is not made and fails with `error`.
        Fail,
        /// The call is made, and reported as failed: an answer that was lost on its way.
        FailAfter,
        /// Half of the bytes that were asked for.
        Short,
    };

    enum class Reach
    {
        Once,
        /// This call and all later ones.
        Later,
        /// This call and all later ones of the same name.
        Same,
    };

    Kind kind = Kind::Nothing;
    int call = 0;
    int error = 0;
    Reach reach = Reach::Once;

    [[nodiscard]] bool kills() const { return kind == Kind::KillBefore || kind == Kind::KillAfter; }

    /// As the command line says it: "kill-before 12", "EIO once 12", "late-EIO same 12", "short later 12".
    [[nodiscard]] QByteArray text() const;
    [[nodiscard]] static std::optional<Injection> ofText(const QByteArray& text);
};

} // namespace lapsa::test
