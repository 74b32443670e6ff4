// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QUrl>

#include <functional>

namespace lapsa {

class FileManagerSelection;

/// Reads the file manager's selection. Stateless.
class FinderSelectionReader final
{
public:
    /// The selected files in the file manager's order; empty when nothing is selected, and after a failure, which is
    /// one log line. Entries without a path are skipped. Blocks until the file manager has answered.
    ///
    /// An answer that is a list without a single entry ends the process, on purpose: no working file manager gives one,
    /// so none of its answers can be relied on. `willStop` is called first, to save unsaved changes.
    [[nodiscard]] static QList<QUrl> selectedFileURLs(FileManagerSelection& selection,
                                                      const std::function<void()>& willStop);
};

} // namespace lapsa
