// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "VirtualDisplay.h"

#include <QList>

#include <tuple>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

void putBack(const char* name, const QByteArray& value)
{
    if (value.isEmpty()) {
        qunsetenv(name);
    } else {
        qputenv(name, value);
    }
}

/// The value of a line "NAME=value" of `xdotool getwindowgeometry --shell`.
int valueOf(const QByteArray& output, QByteArrayView name)
{
    for (const QByteArray& line : output.split('\n')) {
        if (line.startsWith(name)) {
            return line.sliced(name.size()).toInt();
        }
    }
    return 0;
}

} // namespace

VirtualDisplay::VirtualDisplay(const QString& screen)
    : m_previousDisplay(qgetenv("DISPLAY"))
    , m_previousPlatform(qgetenv("QT_QPA_PLATFORM"))
{
    m_server.emplace(u"Xvfb"_s, QStringList{u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, screen, u"-nolisten"_s,
                                            u"tcp"_s, u"-noreset"_s});
    qputenv("DISPLAY", ':' + m_server->readLine().toLatin1());
    qunsetenv("QT_QPA_PLATFORM");
}

VirtualDisplay::~VirtualDisplay()
{
    putBack("DISPLAY", m_previousDisplay);
    putBack("QT_QPA_PLATFORM", m_previousPlatform);
}

void VirtualDisplay::crash()
{
    m_server->kill();
}

std::optional<QRect> VirtualDisplay::windowOfClass(const QString& windowClass)
{
    const QList<QRect> windows = windowsOfClass(windowClass);
    return windows.isEmpty() ? std::nullopt : std::optional(windows.constLast());
}

QList<QRect> VirtualDisplay::windowsOfClass(const QString& windowClass)
{
    QList<QRect> windows;
    const QByteArray found =
        outputOf(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, windowClass}).trimmed();
    for (const QByteArray& id : found.split('\n')) {
        const QByteArray geometry =
            outputOf(u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, QString::fromLatin1(id)});
        if (!id.isEmpty() && !geometry.isEmpty()) { // it may be gone by now
            windows.push_back(QRect(valueOf(geometry, "X="), valueOf(geometry, "Y="), valueOf(geometry, "WIDTH="),
                                    valueOf(geometry, "HEIGHT=")));
        }
    }
    return windows;
}

void VirtualDisplay::click(const QPoint& point, Button button)
{
    // It writes nothing.
    std::ignore = outputOf(u"xdotool"_s, {u"mousemove"_s, QString::number(point.x()), QString::number(point.y()),
                                          u"click"_s, QString::number(int(button))});
}

void VirtualDisplay::clickSlowly(const QPoint& point)
{
    std::ignore = outputOf(u"xdotool"_s, {u"mousemove"_s, QString::number(point.x()), QString::number(point.y()),
                                          u"mousedown"_s, u"1"_s, u"sleep"_s, u"0.6"_s, u"mouseup"_s, u"1"_s});
}

void VirtualDisplay::press(const QString& keys)
{
    std::ignore = outputOf(u"xdotool"_s, {u"key"_s, keys});
}

} // namespace lapsa::test
