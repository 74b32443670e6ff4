// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ProgramIdentity.h"

namespace lapsa::test {

/// A program other than this one: the platform has to take its identity from here.
[[nodiscard]] inline ProgramIdentity exampleProgram()
{
    using namespace Qt::StringLiterals;
    return {
        .id = u"org.example.Viewer"_s, .name = u"Example Viewer"_s, .shortName = u"viewer"_s, .drawings = u":/lapsa"_s};
}

} // namespace lapsa::test
