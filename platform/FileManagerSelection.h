// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

#include <optional>
#include <variant>

namespace lapsa {

/// The selection in the file manager that the user is working in.
class FileManagerSelection
{
public:
    /// No file manager is in front, or nothing is selected in it.
    struct Nothing
    {
        friend bool operator==(const Nothing&, const Nothing&) = default;
    };

    /// Absolute paths in the file manager's order. A selected item without a path, such as one in a remote location, is
    /// an entry without a value.
    using Paths = QList<std::optional<QString>>;

    struct Failure
    {
        QString description;

        friend bool operator==(const Failure&, const Failure&) = default;
    };

    /// A single string is the path of the only selected item.
    using Answer = std::variant<Nothing, QString, Paths, Failure>;

    FileManagerSelection() = default;
    FileManagerSelection(const FileManagerSelection&) = delete;
    FileManagerSelection& operator=(const FileManagerSelection&) = delete;
    virtual ~FileManagerSelection() = default;

    /// Asks and waits, at most 300 ms. Preserves the user's clipboard.
    [[nodiscard]] virtual Answer ask() = 0;
};

} // namespace lapsa
