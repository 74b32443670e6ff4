// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaStore.h"

#include <QString>

namespace lapsa {

/// Something that was found to exist, about to be put on countdown.
struct LapsaStore::FoundFile
{
    /// Standardised.
    QString path;
    bool isDirectory = false;
};

} // namespace lapsa
