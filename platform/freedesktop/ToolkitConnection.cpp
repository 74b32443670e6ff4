// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ToolkitConnection.h"

#include <QGuiApplication>

namespace lapsa {

xcb_connection_t* toolkitConnection()
{
    const auto* const application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    const auto* const x11 =
        application != nullptr ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    // Without a screen the toolkit may say it is on X11, but has no connection.
    return x11 != nullptr ? x11->connection() : nullptr;
}

} // namespace lapsa
