// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Whether windows can be translucent now: on X11 while a compositing manager runs, which may come and go; on Wayland
/// always.
[[nodiscard]] bool compositingAvailable();

} // namespace lapsa
