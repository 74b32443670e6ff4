// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ProgramIdentity.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QDBusMessage;
class QDeadlineTimer;

namespace lapsa {

/// One process per session: the program's id as a bus name, with `org.freedesktop.Application` behind it.
class SessionApplication final : public QObject
{
    Q_OBJECT

public:
    struct Handlers
    {
        /// Files to open with the application, in the order given.
        std::function<void(const QList<QUrl>&)> open;
        /// The application was started again without files.
        std::function<void()> activate = {};
        /// An action of the desktop entry, by its name there; the name may be unknown.
        std::function<void(const QString&)> activateAction = {};
    };

    enum class Role
    {
        /// This process is the application now.
        First,
        /// The running application has accepted the files.
        HandedOver,
        /// Another process runs, but did not answer in time.
        Unanswered,
        /// There is no session bus.
        NoBus,
    };

    explicit SessionApplication(const ProgramIdentity& identity);
    ~SessionApplication() override;

    /// The object at the program's path on the bus. Adaptors for further interfaces become its children before claim().
    [[nodiscard]] QObject& busObject() const;

    /// Becomes the session's application, or hands `files` to the running one and waits for its answer. Calls that
    /// arrive from now on are kept until setHandlers().
    [[nodiscard]] Role claim(const QList<QUrl>& files);

    /// Hands `files` to the application if one runs, without becoming it.
    [[nodiscard]] Role handOver(const QList<QUrl>& files);

    /// Passes calls to the handlers from now on, starting with those kept.
    void setHandlers(Handlers handlers);

private:
    class Interface;
    using Call = std::function<void(const Handlers&)>;

    [[nodiscard]] QDBusMessage callFor(const QList<QUrl>& files) const;
    [[nodiscard]] QDBusMessage handedOver(const QList<QUrl>& files, const QDeadlineTimer& deadline) const;
    void receive(const Call& call);

    ProgramIdentity m_identity;
    std::optional<Handlers> m_handlers;
    /// Calls received before setHandlers().
    QList<Call> m_waiting;
    std::unique_ptr<Interface> m_interface;
    bool m_isFirst = false;
};

} // namespace lapsa
