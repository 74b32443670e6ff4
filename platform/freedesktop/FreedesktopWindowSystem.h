// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "WindowSystem.h"

namespace lapsa {

/// The X server and its compositing manager, which may start and stop at any time. On Wayland, windows can always be
/// translucent and have no taskbar state.
class FreedesktopWindowSystem final : public WindowSystem
{
public:
    [[nodiscard]] bool compositingAvailable() const override;
    void keepOutOfTaskbars(const QWindow& window) override;
};

} // namespace lapsa
