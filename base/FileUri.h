// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lapsa {

/// An absolute path that begins with one slash: a URL would take what follows two for the name of a machine.
[[nodiscard]] QByteArray withOneLeadingSlash(const QByteArray& path);

/// The file URI of an absolute path, its bytes percent-encoded one by one: nothing in a name has a meaning.
[[nodiscard]] QByteArray fileUri(const QString& path);

/// Whether the host of a file URI means this machine: none, "localhost", or the machine's own name, with or without its
/// domain, as `ls --hyperlink` and some drags write it.
[[nodiscard]] bool isThisMachine(const QString& host);

/// The absolute path of a file URI of this machine, with one leading slash; nothing for any other text, and for a path
/// that is not UTF-8.
[[nodiscard]] std::optional<QString> pathOfFileUri(QByteArrayView uri);

/// The text of bytes that are valid UTF-8; nothing for others.
[[nodiscard]] std::optional<QString> textOfUtf8(QByteArrayView bytes);

} // namespace lapsa
