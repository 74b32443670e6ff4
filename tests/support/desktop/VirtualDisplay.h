// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HelperProcess.h"

#include <QByteArray>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>

namespace lapsa::test {

/// A real X server without a screen. The environment names it, for children that shall show something, until it goes.
class VirtualDisplay final
{
public:
    /// `screen` is the size of the screen and the depth of its colours.
    explicit VirtualDisplay(const QString& screen = QStringLiteral("1280x1024x24"));
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;
    ~VirtualDisplay();

    /// The X server ends at once, as a crash would.
    void crash();

    /// Where the newest visible window of that class is, if there is one.
    [[nodiscard]] static std::optional<QRect> windowOfClass(const QString& windowClass);
    /// Where the visible windows of that class are, oldest first.
    [[nodiscard]] static QList<QRect> windowsOfClass(const QString& windowClass);

    enum class Button
    {
        Left = 1,
        Middle = 2,
        Right = 3,
    };

    /// A real click.
    static void click(const QPoint& point, Button button = Button::Left);
    /// A click of a slow hand: the button is held for longer than half a second.
    static void clickSlowly(const QPoint& point);
    /// Real key presses, by the names that xdotool has for them ("ctrl+q").
    static void press(const QString& keys);

private:
    std::optional<HelperProcess> m_server;
    QByteArray m_previousDisplay;
    QByteArray m_previousPlatform;
};

} // namespace lapsa::test
