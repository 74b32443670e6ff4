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

VirtualDisplay::VirtualDisplay()
    : m_previousDisplay(qgetenv("DISPLAY"))
    , m_previousPlatform(qgetenv("QT_QPA_PLATFORM"))
{
    m_server.emplace(u"Xvfb"_s, QStringList{u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x1024x24"_s,
                                            u"-nolisten"_s, u"tcp"_s, u"-noreset"_s});
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
    const QByteArray found =
        outputOf(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, windowClass}).trimmed();
    if (found.isEmpty()) {
        return std::nullopt;
    }
    const QByteArray geometry = outputOf(
        u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, QString::fromLatin1(found.split('\n').constLast())});
    return QRect(valueOf(geometry, "X="), valueOf(geometry, "Y="), valueOf(geometry, "WIDTH="),
                 valueOf(geometry, "HEIGHT="));
}

void VirtualDisplay::click(const QPoint& point)
{
    // It writes nothing.
    std::ignore = outputOf(
        u"xdotool"_s, {u"mousemove"_s, QString::number(point.x()), QString::number(point.y()), u"click"_s, u"1"_s});
}

} // namespace lapsa::test
