// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FuzzTarget.h"

#include <cstddef>
#include <cstdint>

/// What libFuzzer calls, with one input after the other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    lapsa::fuzz::run({data, static_cast<qsizetype>(size)});
    return 0;
}
