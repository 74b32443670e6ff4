// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <optional>

struct xcb_connection_t;

namespace lapsa::bench {

/// Sees when something new stands on the screen: looks at some rows of it, from edge to edge, as fast as the X server
/// answers. The screen is that of DISPLAY, with nothing on it that moves by itself.
class FirstFrame final
{
public:
    /// Ends the program where there is no X server.
    FirstFrame();
    FirstFrame(const FirstFrame&) = delete;
    FirstFrame& operator=(const FirstFrame&) = delete;
    ~FirstFrame();

    /// What stands there now is from here on the old.
    void remember();

    /// Milliseconds from this call until something is new; nothing after ten seconds.
    [[nodiscard]] std::optional<double> waitForChange();

    /// Waits until it looks as it was remembered, for at most ten seconds, and says whether it does.
    [[nodiscard]] bool waitForReturn();

private:
    [[nodiscard]] QByteArray rows() const;

    xcb_connection_t* m_connection;
    QByteArray m_old;
};

} // namespace lapsa::bench
