// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>

#include <xcb/xcb.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>
#include <utility>

namespace lapsa::test {

/// Another program on the X server, played in a thread with a connection of its own: a window that notes its keys, and
/// copies on Control+C. There is no window manager beside it.
class PlayedProgram final
{
public:
    struct Part
    {
        QByteArray windowClass = "Thunar";
        bool taskbar = false;
        /// What it copies: targets and their bytes. Nothing is copied when there is none.
        QList<std::pair<QByteArray, QByteArray>> forms;
        /// Whether it tells which targets it has, and hands out what it has.
        bool handsOut = true;
        bool answersPings = true;
        /// The process that it says it belongs to; none for 0.
        std::uint32_t processId = 0;
        /// Whether it waits to know what is on the clipboard before it copies, as some do to offer "Paste".
        bool looksFirst = false;
    };

    struct Key
    {
        int code = 0;
        /// The modifiers that were down, as the server tells them.
        int state = 0;

        friend bool operator==(const Key&, const Key&) = default;
    };

    explicit PlayedProgram(Part part);
    PlayedProgram(const PlayedProgram&) = delete;
    PlayedProgram& operator=(const PlayedProgram&) = delete;
    ~PlayedProgram();

    /// Makes its window the active one, with the keyboard.
    void activate();
    /// Says that it is active, and has no keyboard.
    void sayActive();
    void focus();

    /// Takes the clipboard now.
    void copy();
    [[nodiscard]] bool ownsClipboard();

    /// Hangs: nothing is read or answered until resume().
    void hang() { m_hanging = true; }

    void resume() { m_hanging = false; }

    [[nodiscard]] QList<Key> keys();

    [[nodiscard]] xcb_window_t window() const { return m_window; }

    [[nodiscard]] static xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name);

private:
    void run();
    void handle(const xcb_generic_event_t& event);
    void pressed(const xcb_key_press_event_t& event);
    void lookAtClipboard();
    void answer(const xcb_selection_request_event_t& request);
    [[nodiscard]] bool handOut(const xcb_selection_request_event_t& request);
    void pong(const xcb_client_message_event_t& message);
    void roundTrip();

    Part m_part;
    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    xcb_window_t m_window;
    std::mutex m_mutex;
    QList<Key> m_keys;
    std::atomic<bool> m_hanging = false;
    std::atomic<bool> m_ending = false;
    std::thread m_thread;
};

/// No window is active.
void noActiveWindow();

} // namespace lapsa::test
