// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

class QTemporaryDir;

namespace lapsa::test {

class TemporaryHome;

/// Before a start: files that are due, nearly due and far from it, here and on another disk; a watched folder; a copy
/// in Recovery whose time is over.
void makeDataOfADay(const TemporaryHome& home, const QTemporaryDir& otherDisk);

} // namespace lapsa::test
