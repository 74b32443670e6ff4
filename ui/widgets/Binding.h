// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>

namespace lapsa {

/// Connects a control to the value it edits, which it does not own: the control reads the value whenever it shows it,
/// writes each change at once, and keeps no copy.
template <typename T>
struct Binding
{
    std::function<T()> read;
    std::function<void(T)> write;
};

} // namespace lapsa
