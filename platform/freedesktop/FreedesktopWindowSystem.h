// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "KWinCompositing.h"
#include "WindowSystem.h"
#include "X11ManagerWatch.h"

namespace lapsa {

/// The X server and its compositing manager, which may start and stop at any time. On Wayland, windows can always be
/// translucent and have no taskbar state.
class FreedesktopWindowSystem final : public WindowSystem
{
    Q_OBJECT

public:
    FreedesktopWindowSystem();

    [[nodiscard]] bool compositingAvailable() const override;
    [[nodiscard]] bool honoursPlaces() const override;
    void keepOutOfTaskbars(const QWindow& window) override;

private:
    X11ManagerWatch m_compositingManager;
    KWinCompositing m_kwin;
};

} // namespace lapsa
