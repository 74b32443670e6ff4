// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Refusal.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace lapsa {

/// What became of an add, for the one who asked for it. What does not exist is in none of its lists.
struct AddResult
{
    /// What may never be taken, and therefore was not put on countdown.
    struct Refused
    {
        /// Standardised.
        QString path;
        fileSystem::Refusal reason = fileSystem::Refusal::Root;

        friend bool operator==(const Refused&, const Refused&) = default;
    };

    /// The ids of the items that were added or started anew, in the order of the add; a file that was named twice has
    /// its item's id in here twice.
    QStringList ids;
    /// The paths of the folders that were not on countdown before, in the same order.
    QStringList newFolders;
    QList<Refused> refused;

    /// Takes what became of a later add of the same gesture in.
    void append(const AddResult& later)
    {
        ids += later.ids;
        newFolders += later.newFolders;
        refused += later.refused;
    }

    friend bool operator==(const AddResult&, const AddResult&) = default;
};

} // namespace lapsa
