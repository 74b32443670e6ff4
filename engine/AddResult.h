// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Refusal.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace lapsa {

/// The outcome of an add.
struct AddResult
{
    /// A path that Lapsa never takes, so it was not put on countdown.
    struct Refused
    {
        /// Standardised.
        QString path;
        fileSystem::Refusal reason = fileSystem::Refusal::Root;

        friend bool operator==(const Refused&, const Refused&) = default;
    };

    /// The ids of the items that were added or restarted, in the order of the request. A file that was named twice has
    /// its item's id here twice.
    QStringList ids;
    /// The paths of the folders that were not yet on countdown, in the same order.
    QStringList newFolders;
    QList<Refused> refused;
    /// The standardised paths at which nothing exists, in the same order.
    QStringList missing = {};

    /// Appends the outcome of a later add of the same gesture.
    void append(const AddResult& later)
    {
        ids += later.ids;
        newFolders += later.newFolders;
        refused += later.refused;
        missing += later.missing;
    }

    friend bool operator==(const AddResult&, const AddResult&) = default;
};

} // namespace lapsa
