// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>

namespace lapsa {

class X11Connection;
class X11Selection;

/// Takes the rest of an answer that came too late or was too large, until nothing has come for a while: an owner of the
/// clipboard may end when the window that it sends to is gone, and the user's content would be lost with it.
class UnfinishedTransfer final : public QObject
{
public:
    UnfinishedTransfer(std::unique_ptr<X11Connection> connection, std::unique_ptr<X11Selection> selection);
    ~UnfinishedTransfer() override;

    /// Whether nothing more will be taken.
    [[nodiscard]] bool ended() const { return !m_selection; }

private:
    void takeRest();
    void stop();

    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<X11Selection> m_selection;
    QSocketNotifier m_input;
    QTimer m_end;
};

} // namespace lapsa
