// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <memory>
#include <variant>

namespace lapsa {

/// An open dialog of the desktop. Destroying it closes the dialog; no answer follows.
class FolderQuestion
{
public:
    FolderQuestion() = default;
    FolderQuestion(const FolderQuestion&) = delete;
    FolderQuestion& operator=(const FolderQuestion&) = delete;
    virtual ~FolderQuestion() = default;
};

/// The desktop's own dialog for choosing one folder, with the user's bookmarks.
class FolderPicker
{
public:
    struct Question
    {
        /// The title of the dialog.
        QString title;
        /// The label of the accept button.
        QString acceptLabel;
        /// The absolute path of the folder shown first; the desktop may show another one.
        QString startFolder;
        /// The native identifier of the dialog's parent window; 0 for none.
        std::uintptr_t window = 0;
    };

    /// The desktop has no such dialog, or does not answer.
    struct Unavailable
    {
        friend bool operator==(const Unavailable&, const Unavailable&) = default;
    };

    /// The user chose nothing, or something that is not a folder on this machine.
    struct Cancelled
    {
        friend bool operator==(const Cancelled&, const Cancelled&) = default;
    };

    using Answer = std::variant<Unavailable, Cancelled, QUrl>;

    FolderPicker() = default;
    FolderPicker(const FolderPicker&) = delete;
    FolderPicker& operator=(const FolderPicker&) = delete;
    virtual ~FolderPicker() = default;

    /// Asks without waiting. `answered` is called once, on the main thread, after this function has returned. It may
    /// destroy the question.
    [[nodiscard]] virtual std::unique_ptr<FolderQuestion> ask(const Question& question,
                                                              std::function<void(const Answer&)> answered) = 0;
};

} // namespace lapsa
