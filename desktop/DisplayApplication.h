// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

class QApplication;
class QString;

namespace lapsa {

/// The folder of icon themes that belongs to this program file and has the symbolic icon of `id`, or an empty text. It
/// is as safe from other users as the program itself. Call after creating the application.
[[nodiscard]] QString ownIconThemes(const QString& id);

/// Whether the environment names a display, or a toolkit platform that needs none.
[[nodiscard]] bool hasDisplay();

/// The toolkit's application, drawing without OpenGL. In a Wayland session it uses XWayland if available, because
/// Wayland does not let a program place its own windows. `argc` and `argv` outlive it.
[[nodiscard]] std::unique_ptr<QApplication> makeDisplayApplication(int& argc, char** argv);

} // namespace lapsa
