// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "UriList.h"

#include "FileUri.h"

#include <algorithm>

namespace lapsa {

namespace {

bool endsLine(char c)
{
    return c == '\n' || c == '\r' || c == '\0';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// "ALPHA *( ALPHA / DIGIT / "+" / "-" / "." )" before a colon (RFC 3986).
bool hasScheme(QByteArrayView line)
{
    const qsizetype colon = line.indexOf(':');
    if (colon <= 0 || !isLetter(line.front())) {
        return false;
    }
    const QByteArrayView scheme = line.first(colon);
    return std::all_of(scheme.begin(), scheme.end(), [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    });
}

} // namespace

FileManagerSelection::Paths pathsOfUriList(QByteArrayView list)
{
    FileManagerSelection::Paths paths;
    const auto* start = list.begin();
    while (start != list.end()) {
        const auto* const end = std::find_if(start, list.end(), endsLine);
        if (const QByteArrayView line(start, end - start); hasScheme(line)) {
            paths.push_back(pathOfFileUri(line));
        }
        start = end == list.end() ? end : end + 1;
    }
    return paths;
}

} // namespace lapsa
