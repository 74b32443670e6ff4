// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HelperProcess.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <optional>

namespace lapsa::test {

/// A real Wayland compositor without a screen. The environment names it, for children, until it goes.
class WaylandSession final
{
public:
    enum class XWayland
    {
        Without,
        /// X11 programs are shown as well.
        With,
    };

    explicit WaylandSession(XWayland xWayland);
    WaylandSession(const WaylandSession&) = delete;
    WaylandSession& operator=(const WaylandSession&) = delete;
    ~WaylandSession();

private:
    QTemporaryDir m_folder;
    QByteArray m_runtimeFolder;
    QByteArray m_platform;
    QByteArray m_display;
    std::optional<HelperProcess> m_compositor;
};

} // namespace lapsa::test
