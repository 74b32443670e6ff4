// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>

namespace lapsa {

/// Connects a control with the value it edits, which belongs to someone else: the control reads it whenever it is
/// shown, writes each change at once, and keeps no copy.
template <typename T>
struct Binding
{
    std::function<T()> read;
    std::function<void(T)> write;
};

} // namespace lapsa
