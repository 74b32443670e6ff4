// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Gives memory that was freed back to the system where the allocator still keeps it: a program that rests all day
/// should not hold what its windows took. It goes through the whole heap: to be called when nobody waits.
void giveBackFreedMemory();

} // namespace lapsa
