// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

class QApplication;

namespace lapsa {

/// Whether the environment names a display, or a platform of the toolkit that needs none.
[[nodiscard]] bool hasDisplay();

/// The toolkit's application, drawing without OpenGL. On a Wayland session it goes through XWayland if there is one: a
/// program may not place its own windows otherwise. `argc` and `argv` outlive it.
[[nodiscard]] std::unique_ptr<QApplication> makeDisplayApplication(int& argc, char** argv);

} // namespace lapsa
