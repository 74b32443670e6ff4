// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FolderPicker.h"

namespace lapsa {

/// The folder dialog of the desktop portal (`org.freedesktop.portal.FileChooser`). The answer is Unavailable if the
/// portal is too old to choose folders, refuses, disappears or takes too long.
class PortalFolderPicker final : public FolderPicker
{
public:
    /// How the parent window is identified to the portal.
    enum class Windows
    {
        X11,
        /// Not at all: the dialog has no parent.
        Unnamed,
    };

    explicit PortalFolderPicker(Windows windows);

    [[nodiscard]] std::unique_ptr<FolderQuestion> ask(const Question& question,
                                                      std::function<void(const Answer&)> answered) override;

private:
    Windows m_windows;
};

} // namespace lapsa
