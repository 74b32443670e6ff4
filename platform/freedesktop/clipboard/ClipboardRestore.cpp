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

/// For a file manager that takes the clipboard once more for the same copy.
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
        // A late copy may begin anew before the first attempt was made. Of two attempts the second would find nothing
        // left to put back, and would empty the clipboard.
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
        clipboard->setMimeData(mimeDataOf(m_content).release()); // the clipboard's from now on
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
    // The toolkit believes that it owns what it wanted to own.
    const QDeadlineTimer deadline(serverPatience);
    X11Connection connection;
    const auto owner = connection.reply<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(connection.get(), connection.atom("CLIPBOARD", deadline)), deadline);
    if (!owner) {
        return true; // a server that does not answer is not asked again
    }
    const bool nobodys = owner->owner == XCB_WINDOW_NONE;
    return nobodys ? !m_content.owned : !connection.sameClient(owner->owner, m_window);
}

} // namespace lapsa
