// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileUri.h"
#include "FuzzTarget.h"

#include <algorithm>

namespace lapsa::fuzz {

namespace {

bool isPlain(char c)
{
    return c > ' ' && c < '\x7f' && c != '"' && c != '<' && c != '>' && c != '#' && c != '?';
}

void checkPath(const QString& path)
{
    const QByteArray uri = fileUri(path);
    demand(pathOfFileUri(uri) == path, "a path survives the way through a URI");
    demand(std::ranges::all_of(uri, isPlain), "a URI is one piece of plain characters");
}

} // namespace

void run(QByteArrayView input)
{
    if (const std::optional<QString> path = pathOfFileUri(input)) {
        demand(path->startsWith(u'/'), "the path of a URI is absolute");
        demand(!path->contains(QChar::Null), "the path of a URI is one that the system can be told");
        checkPath(*path);
    }
    const std::optional<QString> text = textOfUtf8(input);
    demand(text.has_value() == QUtf8StringView(input.data(), input.size()).isValidUtf8(), "text is valid UTF-8");
    if (text) {
        demand(text->toUtf8() == input, "text keeps its bytes");
        if (!text->contains(QChar::Null) && !text->startsWith(u'/')) {
            checkPath(u'/' + *text);
        }
    }
}

} // namespace lapsa::fuzz
