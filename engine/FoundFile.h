// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaStore.h"

#include <QString>

namespace lapsa {

/// An existing file or folder that is about to be put on countdown.
struct LapsaStore::FoundFile
{
    /// Standardised.
    QString path;
    bool isDirectory = false;
};

} // namespace lapsa
