// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ClipboardRestore.h"

#include "ServerTimestamp.h"
#include "X11Connection.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTimer>

#include <chrono>

namespace lapsa {

namespace {

/// Some file managers take the clipboard again for the same copy.
constexpr int tries = 10;
constexpr std::chrono::milliseconds nextTry{20};
constexpr std::chrono::milliseconds serverPatience{200};

} // namespace

void ClipboardRestore::begin(const ClipboardContent& content, xcb_window_t window)
{
    m_content = content;
    m_window = window;
    m_triesLeft = tries;
    ++m_beginning;
    attemptSoon();
}

void ClipboardRestore::attemptSoon()
{
    whenServerTimestampIsFresh(this, [this, beginning = m_beginning] {
        // A late copy may call begin() again before the first attempt was made. A second attempt would find nothing
        // left to restore and would clear the clipboard.
        if (beginning == m_beginning) {
            attempt();
        }
    });
}

void ClipboardRestore::attempt()
{
    --m_triesLeft;
    QClipboard* const clipboard = QGuiApplication::clipboard();
    if (m_content.owned) {
        clipboard->setMimeData(mimeDataOf(m_content).release()); // owned by the clipboard from now on
    } else {
        clipboard->clear();
    }
    if (pending() && !arrived()) {
        QTimer::singleShot(nextTry, this, [this, beginning = m_beginning] {
            if (beginning == m_beginning) {
                attemptSoon();
            }
        });
    } else {
        m_triesLeft = 0;
        m_content = {};
    }
}

bool ClipboardRestore::arrived() const
{
    // The toolkit assumes that it owns the clipboard once it has asked for it, so ask the server.
    const QDeadlineTimer deadline(serverPatience);
    X11Connection connection;
    const auto owner = connection.reply<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(connection.get(), connection.atom("CLIPBOARD", deadline)), deadline);
    if (!owner) {
        return true; // do not ask a server that does not answer again
    }
    const bool nobodys = owner->owner == XCB_WINDOW_NONE;
    return nobodys ? !m_content.owned : !connection.sameClient(owner->owner, m_window);
}

} // namespace lapsa
