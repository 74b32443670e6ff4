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
        /// One of the actions of the desktop entry, by the name it has there; it may also be no such name.
        std::function<void(const QString&)> activateAction = {};
    };

    enum class Role
    {
        /// This process is the application now.
        First,
        /// The one that runs has taken the files over.
        HandedOver,
        /// Another one runs, but did not answer in time.
        Unanswered,
        /// There is no session bus.
        NoBus,
    };

    explicit SessionApplication(const ProgramIdentity& identity);
    ~SessionApplication() override;

    /// Becomes the application of this session, or hands `files` to the one that runs and waits for its answer. Calls
    /// that arrive from now on are kept until there are handlers.
    [[nodiscard]] Role claim(const QList<QUrl>& files);

    /// Hands `files` to the application if one runs, without becoming it.
    [[nodiscard]] Role handOver(const QList<QUrl>& files);

    /// From now on calls go to the handlers, those that were kept first.
    void setHandlers(Handlers handlers);

private:
    class Interface;
    using Call = std::function<void(const Handlers&)>;

    [[nodiscard]] QDBusMessage callFor(const QList<QUrl>& files) const;
    [[nodiscard]] QDBusMessage handedOver(const QList<QUrl>& files, const QDeadlineTimer& deadline) const;
    void receive(const Call& call);

    ProgramIdentity m_identity;
    std::optional<Handlers> m_handlers;
    /// Calls that came before the handlers.
    QList<Call> m_waiting;
    std::unique_ptr<Interface> m_interface;
    bool m_isFirst = false;
};

} // namespace lapsa
