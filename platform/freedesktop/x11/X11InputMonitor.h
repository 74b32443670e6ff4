// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;
struct xcb_connection_t;

namespace lapsa {

/// Observes buttons or keys anywhere on the X11 desktop, even while another program has grabbed the pointer or the
/// keyboard, without intercepting them. Uses one connection to the X server while it exists. Reports nothing if the
/// program itself is not shown on an X server, or without the X Input Extension 2.1.
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

    /// X11 reports the wheel as buttons.
    [[nodiscard]] static constexpr bool isWheel(quint32 button) { return button >= 4 && button <= 7; }

signals:
    /// `detail` is the number of the button, or the key code.
    void pressed(quint32 detail);
    /// Only for buttons.
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
