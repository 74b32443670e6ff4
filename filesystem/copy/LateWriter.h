// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "EntryCopy.h"
#include "SourceFile.h"

namespace lapsa {

class CopyProgress;

/// For a copied file whose last name was just removed. Whoever opened it for writing between the last look at it and
/// its removal still waits for the lease, and would write into a file that nobody can find: lets them write, waits up
/// to ten seconds until they close the file, and puts what it holds then in the place of `copy`. `copied` is how
/// it looked when it was copied. If this fails, `copy` stays as it is.
void followLateWriter(SourceFile& removed, const ContentStamp& copied, const AtPath& copy, CopyProgress& progress);

} // namespace lapsa
