// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Workspace.h"

namespace lapsa {

/// Opens with the session's default application; reveals through `org.freedesktop.FileManager1`. Neither waits.
class FreedesktopWorkspace final : public Workspace
{
public:
    void open(const QUrl& url) override;
    void reveal(const QUrl& url) override;
};

} // namespace lapsa
