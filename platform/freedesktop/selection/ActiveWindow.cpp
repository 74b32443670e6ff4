// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ActiveWindow.h"

#include "X11Connection.h"

#include <algorithm>
#include <array>

namespace lapsa {

namespace {

using Way = FileManagerWindow::Way;

struct KnownClass
{
    QByteArrayView name;
    Way way = Way::Keys;
};

constexpr std::array<KnownClass, 10> knownClasses{{
    {"thunar", Way::Keys},
    {"pcmanfm", Way::Keys},
    {"pcmanfm-qt", Way::Keys},
    {"org.gnome.nautilus", Way::Keys},
    {"nautilus", Way::Keys},
    {"dolphin", Way::DolphinAction},
    {"nemo", Way::Keys},
    {"nemo-desktop", Way::Keys},
    {"caja", Way::Keys},
    {"xfdesktop", Way::Keys},
}};

/// The second part of WM_CLASS; the first names a single window or the command.
QByteArray classOf(const QByteArray& property)
{
    const QList<QByteArray> parts = property.split('\0');
    return parts.size() > 1 ? parts[1] : QByteArray();
}

xcb_window_t activeWindow(X11Connection& connection, const QDeadlineTimer& deadline)
{
    const QList<std::uint32_t> active =
        connection.numbers(connection.root(), connection.atom("_NET_ACTIVE_WINDOW", deadline), deadline);
    return active.isEmpty() ? xcb_window_t{XCB_WINDOW_NONE} : active.first();
}

bool isTaskbar(X11Connection& connection, xcb_window_t window, const QDeadlineTimer& deadline)
{
    return connection.numbers(window, connection.atom("_NET_WM_WINDOW_TYPE", deadline), deadline)
        .contains(connection.atom("_NET_WM_WINDOW_TYPE_DOCK", deadline));
}

void watchRoot(X11Connection& connection)
{
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK, &events);
}

bool rootChanged(X11Connection& connection, const QDeadlineTimer& deadline)
{
    return connection.nextEvent(
               [&connection](const xcb_generic_event_t& event) {
                   return kindOf(event) == XCB_PROPERTY_NOTIFY &&
                          reinterpret_cast<const xcb_property_notify_event_t&>(event).window == connection.root();
               },
               deadline) != nullptr;
}

} // namespace

std::optional<Way> wayOfClass(QByteArrayView windowClass)
{
    const auto* const known =
        std::find_if(knownClasses.begin(), knownClasses.end(), [windowClass](const KnownClass& k) {
            return k.name.compare(windowClass, Qt::CaseInsensitive) == 0;
        });
    return known != knownClasses.end() ? std::optional(known->way) : std::nullopt;
}

std::optional<FileManagerWindow> activeFileManager(X11Connection& connection, std::uint32_t ours,
                                                   const QDeadlineTimer& deadline)
{
    watchRoot(connection);
    do {
        const xcb_window_t window = activeWindow(connection, deadline);
        const bool passing =
            window == XCB_WINDOW_NONE || connection.sameClient(window, ours) || isTaskbar(connection, window, deadline);
        if (!passing) {
            const auto way = wayOfClass(classOf(connection.text(window, XCB_ATOM_WM_CLASS, deadline)));
            if (!way) {
                return std::nullopt;
            }
            const QList<std::uint32_t> process =
                connection.numbers(window, connection.atom("_NET_WM_PID", deadline), deadline);
            return FileManagerWindow{
                .window = window, .way = *way, .processId = process.isEmpty() ? 0 : process.first()};
        }
    } while (rootChanged(connection, deadline));
    return std::nullopt;
}

} // namespace lapsa
