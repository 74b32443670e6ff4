// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>
#include <QString>

#include <cstdint>
#include <memory>
#include <variant>

class QMimeData;

namespace lapsa {

class X11Connection;
class X11Selection;

/// The whole content of the clipboard, in every form that its owner offers.
struct ClipboardContent
{
    struct Form
    {
        /// The toolkit's name for the form; plain text is "text/plain", in UTF-8.
        QString name;
        QByteArray bytes;

        friend bool operator==(const Form&, const Form&) = default;
    };

    QList<Form> forms;
    /// A clipboard without an owner holds nothing, not even empty text.
    bool owned = false;

    friend bool operator==(const ClipboardContent&, const ClipboardContent&) = default;
};

/// Copies the clipboard's content, or says why it cannot be copied completely. If the client with the resource `ours`
/// (this program's toolkit) owns the clipboard, the content comes from the toolkit.
[[nodiscard]] std::variant<ClipboardContent, QString> clipboardContent(X11Connection& connection,
                                                                       X11Selection& selection, std::uint32_t ours,
                                                                       const QDeadlineTimer& deadline);

/// The content while this program's toolkit owns the clipboard, or why it cannot be copied.
[[nodiscard]] std::variant<ClipboardContent, QString> ownClipboardContent();

/// The content for the toolkit's clipboard, with the bytes of each form unchanged.
[[nodiscard]] std::unique_ptr<QMimeData> mimeDataOf(const ClipboardContent& content);

} // namespace lapsa
