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

/// A dialog of the desktop that is open. Destroying it closes the dialog, and nothing is answered any more.
class FolderQuestion
{
public:
    FolderQuestion() = default;
    FolderQuestion(const FolderQuestion&) = delete;
    FolderQuestion& operator=(const FolderQuestion&) = delete;
    virtual ~FolderQuestion() = default;
};

/// The desktop's own dialog for one folder, with the places that the user keeps there.
class FolderPicker
{
public:
    struct Question
    {
        /// The title of the dialog.
        QString title;
        /// The button that chooses.
        QString acceptLabel;
        /// The absolute path of the folder that is shown first; a desktop may prefer its own.
        QString startFolder;
        /// The native identifier of the window that the dialog belongs to; 0 without one.
        std::uintptr_t window = 0;
    };

    /// The desktop has no such dialog, or does not answer.
    struct Unavailable
    {
        friend bool operator==(const Unavailable&, const Unavailable&) = default;
    };

    /// The user chose nothing, or something that is no folder of this machine.
    struct Cancelled
    {
        friend bool operator==(const Cancelled&, const Cancelled&) = default;
    };

    using Answer = std::variant<Unavailable, Cancelled, QUrl>;

    FolderPicker() = default;
    FolderPicker(const FolderPicker&) = delete;
    FolderPicker& operator=(const FolderPicker&) = delete;
    virtual ~FolderPicker() = default;

    /// Asks without waiting. `answered` is called once, on the main thread, after this has returned, and may destroy
    /// the question.
    [[nodiscard]] virtual std::unique_ptr<FolderQuestion> ask(const Question& question,
                                                              std::function<void(const Answer&)> answered) = 0;
};

} // namespace lapsa
