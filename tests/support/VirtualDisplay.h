// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HelperProcess.h"

#include <QByteArray>
#include <QRect>
#include <QString>

#include <optional>

namespace lapsa::test {

/// A real X server without a screen. The environment names it, for children that shall show something, until it goes.
class VirtualDisplay final
{
public:
    VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;
    ~VirtualDisplay();

    /// The X server ends at once, as a crash would.
    void crash();

    /// Where the newest visible window of that class is, if there is one.
    [[nodiscard]] static std::optional<QRect> windowOfClass(const QString& windowClass);
    /// A real click of the left button.
    static void click(const QPoint& point);

private:
    std::optional<HelperProcess> m_server;
    QByteArray m_previousDisplay;
    QByteArray m_previousPlatform;
};

} // namespace lapsa::test
