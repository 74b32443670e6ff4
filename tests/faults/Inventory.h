// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <vector>

namespace lapsa::test {

/// One name of a file, link or special file; folders are only the way to it.
struct FileFound
{
    /// Absolute, raw bytes.
    QByteArray path;
    /// What it is and holds: two of the same key are the same to a user.
    QByteArray key;
    /// Mode, time of the last change, the user's own attributes.
    QByteArray attributes;
    /// Whether it carries the mark of a copy whose original may still stand.
    bool marked = false;
};

/// Everything below a folder, in no order. Links are not followed.
[[nodiscard]] std::vector<FileFound> filesBelow(const QByteArray& folder);

} // namespace lapsa::test
