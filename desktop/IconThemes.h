// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Appearance.h"

#include <QString>

namespace lapsa {

/// Lets QIcon find the icons of files for a scheme: those of the desktop's theme or of its dark or light twin,
/// whichever suits the scheme ("breeze" and "breeze-dark"); failing that, those of a common theme that is installed.
/// `desktopTheme` is the name that the desktop gave, which need not be installed.
void useIconsFor(ColorScheme scheme, const QString& desktopTheme);

} // namespace lapsa
