// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lapsa {

/// Reduces the leading slashes of an absolute path to one: in a URL, the part after two would be a host name.
[[nodiscard]] QByteArray withOneLeadingSlash(const QByteArray& path);

/// The file URI of an absolute path. Percent-encodes bytes, so that no character of a name has a special meaning.
[[nodiscard]] QByteArray fileUri(const QString& path);

/// Whether the host of a file URI means this machine: empty, "localhost" or the machine's own name, with or without its
/// domain, as written by `ls --hyperlink` and some drags.
[[nodiscard]] bool isThisMachine(const QString& host);

/// The absolute path, with one leading slash, of a file URI that means this machine. Nothing for any other text or if
/// the path is not UTF-8.
[[nodiscard]] std::optional<QString> pathOfFileUri(QByteArrayView uri);

/// The text of valid UTF-8 bytes; nothing if they are invalid.
[[nodiscard]] std::optional<QString> textOfUtf8(QByteArrayView bytes);

} // namespace lapsa
