// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FuzzTarget.h"

#include <QtGlobal>

namespace lapsa::fuzz {

void demand(bool holds, const char* claim)
{
    if (!holds) {
        qFatal("not so: %s", claim);
    }
}

} // namespace lapsa::fuzz
