// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileManagerSelection.h"

#include <QByteArrayView>

namespace lapsa {

/// The files of "text/uri-list" (RFC 2483) and of "x-special/gnome-copied-files" as file managers write them: lines end
/// in CR LF, LF or NUL, the last one perhaps not at all. In their order; what has no path on this machine is an entry
/// without a value. Lines that are no URI are left out, as comments and the "copy" or "cut" at the top of the second
/// kind; without any URI the result is empty.
[[nodiscard]] FileManagerSelection::Paths pathsOfUriList(QByteArrayView list);

} // namespace lapsa
