// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdlib>
#include <memory>

namespace lapsa {

struct XcbFree
{
    // xcb allocates by malloc.
    void operator()(void* pointer) const { std::free(pointer); } // NOLINT(cppcoreguidelines-no-malloc)
};

/// Owns a reply, an event or an error of xcb.
template <typename T>
using XcbPointer = std::unique_ptr<T, XcbFree>;

template <typename T>
[[nodiscard]] XcbPointer<T> xcbPointer(T* pointer)
{
    return XcbPointer<T>(pointer);
}

} // namespace lapsa
