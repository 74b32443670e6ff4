// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FocusProbe.h"

#include <QDeadlineTimer>
#include <QThread>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <span>
#include <string_view>

namespace lapsa::test {

namespace {

/// Only a limit for a machine under load; reached when something is broken.
constexpr int patience = 30'000;

/// A window that asks for the focus. Other than the properties of the root window, it shows whether the window manager
/// is ready: xfwm4 sets those first, and then gives itself the focus once more. A window that is shown in between gets
/// its focus from xfwm4 with an older time than that, and the X server ignores it.
class FocusProbe final
{
public:
    FocusProbe()
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
        , m_window(xcb_generate_id(m_connection))
    {
        constexpr std::uint16_t extent = 50;
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, 0, 0, extent, extent, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(m_connection, m_window);
        xcb_flush(m_connection);
    }

    FocusProbe(const FocusProbe&) = delete;
    FocusProbe& operator=(const FocusProbe&) = delete;

    ~FocusProbe() { xcb_disconnect(m_connection); }

    /// Whether it has the focus; if not, asks for it.
    [[nodiscard]] bool hasFocus() const
    {
        const Answer<xcb_get_input_focus_reply_t> focus(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr), std::free);
        if (focus && focus->focus == m_window) {
            return true;
        }
        xcb_client_message_event_t request{};
        request.response_type = XCB_CLIENT_MESSAGE;
        request.format = 32;
        request.window = m_window;
        request.type = atom("_NET_ACTIVE_WINDOW");
        request.data.data32[0] = 2; // as a taskbar asks: not to be refused
        xcb_send_event(m_connection, 0, m_root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&request));
        xcb_flush(m_connection);
        return false;
    }

    void close() const
    {
        xcb_destroy_window(m_connection, m_window);
        xcb_flush(m_connection);
    }

    /// Whether the window manager still lists it. It takes it off the list when it has moved the focus on.
    [[nodiscard]] bool isListed() const
    {
        constexpr std::uint32_t mostWindows = 1000;
        const Answer<xcb_get_property_reply_t> list(
            xcb_get_property_reply(m_connection,
                                   xcb_get_property(m_connection, 0, m_root, atom("_NET_CLIENT_LIST_STACKING"),
                                                    XCB_ATOM_WINDOW, 0, mostWindows),
                                   nullptr),
            std::free);
        if (!list) {
            return false;
        }
        const std::span windows(static_cast<const xcb_window_t*>(xcb_get_property_value(list.get())),
                                std::size_t(xcb_get_property_value_length(list.get())) / sizeof(xcb_window_t));
        return std::ranges::find(windows, m_window) != windows.end();
    }

private:
    template <typename Reply>
    using Answer = std::unique_ptr<Reply, void (*)(void*)>;

    [[nodiscard]] xcb_atom_t atom(std::string_view name) const
    {
        const Answer<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(m_connection,
                                  xcb_intern_atom(m_connection, 0, std::uint16_t(name.size()), name.data()), nullptr),
            std::free);
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    xcb_window_t m_window;
};

void waitUntil(const std::function<bool()>& condition)
{
    constexpr unsigned long betweenLooks = 30;
    const QDeadlineTimer deadline(patience);
    while (!condition()) {
        if (deadline.hasExpired()) {
            qFatal("the window manager does not come up");
        }
        QThread::msleep(betweenLooks);
    }
}

} // namespace

void awaitWindowManager()
{
    const FocusProbe probe;
    waitUntil([&probe] { return probe.hasFocus(); });
    probe.close();
    waitUntil([&probe] { return !probe.isListed(); });
}

} // namespace lapsa::test
