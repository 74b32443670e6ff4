// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>

namespace lapsa::fuzz {

/// Hands one input, which may be any bytes, to the code of a program's name, and demands what holds for every input.
/// Each program defines it once.
void run(QByteArrayView input);

/// Ends the process where a claim does not hold.
void demand(bool holds, const char* claim);

} // namespace lapsa::fuzz
