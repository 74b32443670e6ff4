// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;
struct xcb_connection_t;

namespace lapsa {

/// Hears of buttons or keys wherever on the X11 desktop they are used, also while another program has grabbed the
/// pointer or the keyboard, and takes them from nobody. It costs a connection to the X server while it lives. Without
/// an X server that the program itself is shown on, and without the X Input Extension 2.1, it hears nothing.
class X11InputMonitor final : public QObject
{
    Q_OBJECT

public:
    enum class Kind
    {
        Buttons,
        Keys,
    };

    explicit X11InputMonitor(Kind kind);
    ~X11InputMonitor() override;

    /// On X11 a wheel turns by buttons.
    [[nodiscard]] static constexpr bool isWheel(quint32 button) { return button >= 4 && button <= 7; }

signals:
    /// `detail` is the number of the button, or the key code.
    void pressed(quint32 detail);
    /// Of buttons alone.
    void released(quint32 button);

private:
    struct Disconnect
    {
        void operator()(xcb_connection_t* connection) const;
    };

    [[nodiscard]] bool select(Kind kind);
    void readEvents();

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    std::unique_ptr<QSocketNotifier> m_notifier;
    quint8 m_extension = 0;
};

} // namespace lapsa
