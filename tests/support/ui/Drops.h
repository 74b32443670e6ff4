// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QMimeData;

namespace lapsa {

class DropZone;

} // namespace lapsa

namespace lapsa::test {

/// Drags `data` in and drops it. Whether both were accepted, the drop as a copy.
bool drop(DropZone& target, const QMimeData& data);
/// Drops the files with these paths.
void dropFiles(DropZone& target, const QStringList& paths);

} // namespace lapsa::test
