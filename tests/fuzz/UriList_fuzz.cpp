// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileUri.h"
#include "FuzzTarget.h"
#include "UriList.h"

#include <algorithm>

namespace lapsa::fuzz {

void run(QByteArrayView input)
{
    const FileManagerSelection::Paths paths = pathsOfUriList(input);
    const auto lines = 1 + std::ranges::count_if(input, [](char c) { return c == '\n' || c == '\r' || c == '\0'; });
    demand(paths.size() <= lines, "a line is one file at most");

    QByteArray written;
    for (const auto& path : paths) {
        demand(!path || path->startsWith(u'/'), "a path is absolute");
        demand(!path || !path->contains(QChar::Null), "a path is one that the system can be told");
        written += (path ? fileUri(*path) : QByteArray("http://elsewhere/")) + "\r\n";
    }
    demand(pathsOfUriList(written) == paths, "a list survives being written anew");
    demand(pathsOfUriList(input.toByteArray() + "\r\n" + written) == paths + paths, "lists can be joined");
}

} // namespace lapsa::fuzz
