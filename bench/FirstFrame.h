// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <optional>

struct xcb_connection_t;

namespace lapsa::bench {

/// Detects when something new appears on the screen: compares some full-width rows of it as fast as the X server
/// answers. Uses the screen of DISPLAY, on which nothing may move by itself.
class FirstFrame final
{
public:
    /// Ends the program if there is no X server.
    FirstFrame();
    FirstFrame(const FirstFrame&) = delete;
    FirstFrame& operator=(const FirstFrame&) = delete;
    ~FirstFrame();

    /// Remembers the current content for the comparison.
    void remember();

    /// Milliseconds from this call until something new appears; nothing after ten seconds.
    [[nodiscard]] std::optional<double> waitForChange();

    /// Waits at most ten seconds until the screen looks as remembered, and returns whether it does.
    [[nodiscard]] bool waitForReturn();

private:
    [[nodiscard]] QByteArray rows() const;

    xcb_connection_t* m_connection;
    QByteArray m_old;
};

} // namespace lapsa::bench
