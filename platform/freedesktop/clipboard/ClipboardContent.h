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

/// All that is on the clipboard, in every form that its owner offers.
struct ClipboardContent
{
    struct Form
    {
        /// The name of the form as the toolkit knows it; plain text is "text/plain", as UTF-8.
        QString name;
        QByteArray bytes;

        friend bool operator==(const Form&, const Form&) = default;
    };

    QList<Form> forms;
    /// Nothing, not even an empty text, is on a clipboard that nobody owns.
    bool owned = false;

    friend bool operator==(const ClipboardContent&, const ClipboardContent&) = default;
};

/// Copies the clipboard's content, or tells why it cannot be had whole. When the client with the resource `ours`, which
/// is this program's toolkit, owns it, it is taken from there.
[[nodiscard]] std::variant<ClipboardContent, QString> clipboardContent(X11Connection& connection,
                                                                       X11Selection& selection, std::uint32_t ours,
                                                                       const QDeadlineTimer& deadline);

/// The content where this program's toolkit owns the clipboard, or why it cannot be had.
[[nodiscard]] std::variant<ClipboardContent, QString> ownClipboardContent();

/// The content for the toolkit's clipboard, each form as the bytes that it was.
[[nodiscard]] std::unique_ptr<QMimeData> mimeDataOf(const ClipboardContent& content);

} // namespace lapsa
