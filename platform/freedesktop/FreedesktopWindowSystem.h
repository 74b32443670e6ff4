// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "WindowSystem.h"

#include <memory>

namespace lapsa {

class KWinCompositing;
class X11ManagerWatch;

/// The X server and its compositing manager, which may start and stop at any time. On Wayland, windows can always be
/// translucent and have no taskbar state.
class FreedesktopWindowSystem final : public WindowSystem
{
    Q_OBJECT

public:
    FreedesktopWindowSystem();
    ~FreedesktopWindowSystem() override;

    [[nodiscard]] bool compositingAvailable() const override;
    [[nodiscard]] bool honoursPlaces() const override;
    void keepOutOfTaskbars(const QWindow& window) override;

private:
    std::unique_ptr<X11ManagerWatch> m_compositingManager;
    std::unique_ptr<KWinCompositing> m_kwin;
};

} // namespace lapsa
