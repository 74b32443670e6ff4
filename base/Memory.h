// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Returns freed memory that the allocator still keeps to the system: a program that is idle all day should not keep
/// what its windows used. It walks the whole heap: call it when nobody is waiting.
void giveBackFreedMemory();

} // namespace lapsa
