// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

class Lanes;
class MainQueue;

/// What a chooser needs. All of it outlives the chooser.
struct ChooserEnvironment
{
    Lanes& lanes;
    MainQueue& mainQueue;
};

/// What a chooser is for.
struct ChooserPurpose
{
    QString title;
    /// The label before the path field.
    QString fieldLabel;
    /// Whether to choose one folder instead of several files and folders.
    bool oneFolder = false;
};

} // namespace lapsa
