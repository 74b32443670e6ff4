// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

#include <optional>
#include <variant>

namespace lapsa {

/// What is selected in the file manager that the user works with.
class FileManagerSelection
{
public:
    /// No file manager is in front, or nothing is selected in it.
    struct Nothing
    {
        friend bool operator==(const Nothing&, const Nothing&) = default;
    };

    /// Absolute paths in the file manager's order. A selected thing without a path, as one in a remote place, is an
    /// entry without a value.
    using Paths = QList<std::optional<QString>>;

    struct Failure
    {
        QString description;

        friend bool operator==(const Failure&, const Failure&) = default;
    };

    /// A single text is the path of the one thing that is selected.
    using Answer = std::variant<Nothing, QString, Paths, Failure>;

    FileManagerSelection() = default;
    FileManagerSelection(const FileManagerSelection&) = delete;
    FileManagerSelection& operator=(const FileManagerSelection&) = delete;
    virtual ~FileManagerSelection() = default;

    /// Asks and waits, 300 ms at most. What the user has on the clipboard is the same afterwards.
    [[nodiscard]] virtual Answer ask() = 0;
};

} // namespace lapsa
