// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ProgramIdentity.h"

namespace lapsa::test {

/// A program other than this one: the platform has to take its identity from here.
[[nodiscard]] inline ProgramIdentity exampleProgram()
{
    return {.id = QStringLiteral("org.example.Viewer"),
            .name = QStringLiteral("Example Viewer"),
            .shortName = QStringLiteral("viewer"),
            .drawings = QStringLiteral(":/lapsa")};
}

} // namespace lapsa::test
