// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

class DeletionUndo;
class FileIconSource;
class ItemKinds;
class ItemWorkSource;
class LapsaStore;

/// What the rows need. All of it outlives them.
struct RowEnvironment
{
    LapsaStore& store;
    FileIconSource& icons;
    ItemKinds& kinds;
    const ItemWorkSource& work;
    DeletionUndo& undo;
};

} // namespace lapsa
