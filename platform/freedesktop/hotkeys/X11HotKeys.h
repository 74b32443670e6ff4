// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HotKeys.h"

struct xcb_connection_t;

namespace lapsa {

/// Global keys of an X server: grabs on its root windows, over the toolkit's own connection. They follow the keyboard
/// layout. A key that another program holds is tried again when the layout changes.
class X11HotKeys final : public HotKeys
{
public:
    /// `connection` is the toolkit's and must outlive this object and all registrations.
    explicit X11HotKeys(xcb_connection_t* connection);

    [[nodiscard]] std::unique_ptr<HotKeyRegistration> registerHotKey(const HotKey& key,
                                                                     std::function<void()> pressed) override;

private:
    xcb_connection_t* m_connection;
};

} // namespace lapsa
