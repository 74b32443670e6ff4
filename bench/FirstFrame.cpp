// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FirstFrame.h"

#include <QElapsedTimer>
#include <QThread>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace lapsa::bench {

namespace {

constexpr int patience = 10'000;
/// Far enough apart to be read quickly, and close enough that no window fits between two of them.
constexpr std::int16_t rowDistance = 96;

} // namespace

FirstFrame::FirstFrame()
    : m_connection(::xcb_connect(nullptr, nullptr))
{
    if (::xcb_connection_has_error(m_connection) != 0) {
        qFatal("no X server");
    }
}

FirstFrame::~FirstFrame()
{
    ::xcb_disconnect(m_connection);
}

void FirstFrame::remember()
{
    m_old = rows();
}

std::optional<double> FirstFrame::waitForChange()
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!elapsed.hasExpired(patience)) {
        if (rows() != m_old) {
            return double(elapsed.nsecsElapsed()) / 1e6;
        }
    }
    return std::nullopt;
}

bool FirstFrame::waitForReturn()
{
    constexpr unsigned long pause = 20;
    QElapsedTimer elapsed;
    elapsed.start();
    while (rows() != m_old) {
        if (elapsed.hasExpired(patience)) {
            return false;
        }
        QThread::msleep(pause);
    }
    return true;
}

QByteArray FirstFrame::rows() const
{
    const xcb_screen_t* const screen = ::xcb_setup_roots_iterator(::xcb_get_setup(m_connection)).data;
    std::vector<xcb_get_image_cookie_t> asked;
    for (std::int16_t y = rowDistance; y < screen->height_in_pixels; y = std::int16_t(y + rowDistance)) {
        asked.push_back(::xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0, y,
                                        screen->width_in_pixels, 1, ~0U));
    }
    QByteArray rows;
    for (const xcb_get_image_cookie_t cookie : asked) {
        xcb_get_image_reply_t* const reply = ::xcb_get_image_reply(m_connection, cookie, nullptr);
        if (reply != nullptr) {
            rows.append(reinterpret_cast<const char*>(::xcb_get_image_data(reply)), ::xcb_get_image_data_length(reply));
            std::free(reply);
        }
    }
    return rows;
}

} // namespace lapsa::bench
