// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileManagerSelection.h"

#include <QByteArrayView>

namespace lapsa {

/// The files of "text/uri-list" (RFC 2483) and of "x-special/gnome-copied-files" as file managers write them: lines end
/// in CR LF, LF or NUL; the last line may have no end. Keeps the order; a URI without a path on this machine becomes an
/// entry without a value. Skips lines that are not URIs, such as comments and the "copy" or "cut" at the top of the
/// second format. Empty if there is no URI.
[[nodiscard]] FileManagerSelection::Paths pathsOfUriList(QByteArrayView list);

} // namespace lapsa
