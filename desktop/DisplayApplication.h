// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

class QApplication;

namespace lapsa {

/// Whether the environment names a display, or a toolkit platform that needs none.
[[nodiscard]] bool hasDisplay();

/// The toolkit's application, drawing without OpenGL. In a Wayland session it uses XWayland if available, because
/// Wayland does not let a program place its own windows. `argc` and `argv` outlive it.
[[nodiscard]] std::unique_ptr<QApplication> makeDisplayApplication(int& argc, char** argv);

} // namespace lapsa
