// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FolderPicker.h"

namespace lapsa {

/// The folder dialog of the desktop portal (`org.freedesktop.portal.FileChooser`). A portal that is too old to choose
/// folders, refuses, goes away or takes its time is Unavailable.
class PortalFolderPicker final : public FolderPicker
{
public:
    /// How a window is named towards the portal.
    enum class Windows
    {
        X11,
        /// Not at all: the dialog stands for itself.
        Unnamed,
    };

    explicit PortalFolderPicker(Windows windows);

    [[nodiscard]] std::unique_ptr<FolderQuestion> ask(const Question& question,
                                                      std::function<void(const Answer&)> answered) override;

private:
    Windows m_windows;
};

} // namespace lapsa
