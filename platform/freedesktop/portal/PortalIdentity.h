// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// Tells the desktop portal which program this is (`org.freedesktop.host.portal.Registry`), by the name of its desktop
/// entry: otherwise the portal only knows it if the desktop started it in a systemd scope of its own, and desktops keep
/// keys and permissions by program. Call this before anything else that asks the portal. Does not wait; portals before
/// 1.20 do not know the call.
void introduceToPortal(const QString& programId);

} // namespace lapsa
