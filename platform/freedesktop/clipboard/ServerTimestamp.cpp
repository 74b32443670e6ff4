// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ServerTimestamp.h"

#include "X11Screen.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace lapsa {

namespace {

/// Changes a property of its own window on the toolkit's connection, and waits for the server's event about it.
class Refresh final : public QObject, public QAbstractNativeEventFilter
{
public:
    Refresh(QObject* context, xcb_connection_t* connection, std::function<void()> then)
        : QObject(context)
        , m_connection(connection)
        , m_window(xcb_generate_id(connection))
        , m_then(std::move(then))
    {
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_window, root, -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                            nullptr);
        xcb_flush(connection);
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    Refresh(const Refresh&) = delete;
    Refresh& operator=(const Refresh&) = delete;

    ~Refresh() override
    {
        // The toolkit and its connection may be gone already.
        if (x11Connection() == m_connection) {
            xcb_destroy_window(m_connection, m_window);
            xcb_flush(m_connection);
        }
    }

    bool nativeEventFilter(const QByteArray& kind, void* message, qintptr*) override
    {
        const auto* const event = static_cast<const xcb_property_notify_event_t*>(message);
        if (kind != "xcb_generic_event_t" || event->response_type != XCB_PROPERTY_NOTIFY || event->window != m_window ||
            m_seen) {
            return false;
        }
        m_seen = true;
        // The toolkit sees the event after this filter.
        QMetaObject::invokeMethod(this, &Refresh::finish, Qt::QueuedConnection);
        return false;
    }

private:
    void finish()
    {
        m_then();
        deleteLater();
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_window;
    std::function<void()> m_then;
    bool m_seen = false;
};

} // namespace

void whenServerTimestampIsFresh(QObject* context, std::function<void()> then)
{
    if (xcb_connection_t* const connection = x11Connection()) {
        new Refresh(context, connection, std::move(then)); // deletes itself, or is deleted with its context
    } else {
        then();
    }
}

} // namespace lapsa
