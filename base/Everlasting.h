// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

namespace lapsa {

/// Makes an object that is never destroyed: a thread that a dead disk held up may come back to it while the process
/// ends.
template <typename T>
[[nodiscard]] T& makeEverlasting()
{
    return *std::make_unique<T>().release();
}

} // namespace lapsa
