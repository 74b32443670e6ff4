// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT
//
// Only for building earlier commits (tools/bench --check): some releases of Linux 6.1 name a parameter of this header
// "class", which no C++ compiler reads, and make a constant of it a call.

#pragma once

#pragma GCC system_header
#define class class_
#include_next <linux/ioprio.h>
#undef class
#undef IOPRIO_PRIO_VALUE
#define IOPRIO_PRIO_VALUE(priorityClass, level) (((priorityClass) << IOPRIO_CLASS_SHIFT) | (level))
