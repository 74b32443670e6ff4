// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QUrl>

#include <functional>

namespace lapsa {

class FileManagerSelection;

/// Reads what is selected in the file manager. Without state.
class FinderSelectionReader final
{
public:
    /// The selected files in the file manager's order; empty when nothing is selected, and after a failure, which is
    /// one log line. What has no path is skipped. Waits until the file manager has answered.
    ///
    /// An answer that is a list without a single entry ends the process, on purpose: no working file manager gives
    /// one, so nothing that it says can be relied on. `willStop` is called before, to save what is not saved.
    [[nodiscard]] static QList<QUrl> selectedFileURLs(FileManagerSelection& selection,
                                                      const std::function<void()>& willStop);
};

} // namespace lapsa
