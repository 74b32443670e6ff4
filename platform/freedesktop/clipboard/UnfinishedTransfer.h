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

/// Reads the rest of an answer that was too late or too large, until nothing more arrives for a while: some clipboard
/// owners exit when the window that they send to disappears, and the user's content would be lost.
class UnfinishedTransfer final : public QObject
{
public:
    UnfinishedTransfer(std::unique_ptr<X11Connection> connection, std::unique_ptr<X11Selection> selection);
    ~UnfinishedTransfer() override;

    /// Whether reading has stopped.
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
