// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ClipboardContent.h"
#include "CopyWatch.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>

namespace lapsa {

class X11Connection;

/// Watches a file manager that was asked to copy and has not done so in time: if it still takes the clipboard, the
/// user's content is restored. Stops when another program takes the clipboard, and after a time limit.
class LateCopy final : public QObject
{
public:
    struct Parts
    {
        std::unique_ptr<X11Connection> connection;
        /// Uses the connection.
        std::unique_ptr<CopyWatch> watch;
        ClipboardContent content;
    };

    LateCopy(Parts parts, std::function<void(const ClipboardContent&)> restore);
    ~LateCopy() override;

    /// Whether the file manager may still be handling the request.
    [[nodiscard]] bool unanswered() const;

    /// Handles the events received so far, without the event loop.
    void readEvents();

private:
    void noteOwnContent();
    void stop();

    Parts m_parts;
    std::function<void(const ClipboardContent&)> m_restore;
    QSocketNotifier m_input;
    QTimer m_end;
};

} // namespace lapsa
