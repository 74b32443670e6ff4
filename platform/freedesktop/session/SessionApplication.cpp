// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SessionApplication.h"

#include "FileUri.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDeadlineTimer>
#include <QStringList>
#include <QThread>
#include <QVariantMap>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString interfaceName = u"org.freedesktop.Application"_s;

/// The running application may be busy starting up or waiting for a slow disk.
constexpr std::chrono::seconds patience{30};
/// Between two attempts, while the previous process is exiting.
constexpr std::chrono::milliseconds pause{20};

/// Whether a call failed because the called application has exited or is exiting.
bool vanished(const QDBusMessage& reply)
{
    static const QStringList names{
        u"org.freedesktop.DBus.Error.NoReply"_s,        u"org.freedesktop.DBus.Error.ServiceUnknown"_s,
        u"org.freedesktop.DBus.Error.NameHasNoOwner"_s, u"org.freedesktop.DBus.Error.Disconnected"_s,
        u"org.freedesktop.DBus.Error.UnknownObject"_s,
    };
    return names.contains(reply.errorName());
}

} // namespace

/// `org.freedesktop.Application` of the Desktop Entry Specification.
class SessionApplication::Interface final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit Interface(SessionApplication& application)
        : m_application(application)
    {}

public slots: // NOLINT(readability-redundant-access-specifiers): these are the methods on the bus

    // NOLINTBEGIN(readability-identifier-naming): their names are given by the interface

    Q_SCRIPTABLE void Activate(const QVariantMap& /*platformData*/)
    {
        m_application.receive([](const Handlers& handlers) {
            if (handlers.activate) {
                handlers.activate();
            }
        });
    }

    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& /*platformData*/)
    {
        QList<QUrl> files;
        for (const QString& uri : uris) {
            if (const std::optional<QString> path = pathOfFileUri(uri.toUtf8())) {
                files.push_back(QUrl::fromLocalFile(*path));
            }
        }
        m_application.receive([files](const Handlers& handlers) { handlers.open(files); });
    }

    /// None of the actions takes a parameter: any that is given is ignored.
    Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& /*parameter*/,
                                     const QVariantMap& /*platformData*/)
    {
        m_application.receive([name](const Handlers& handlers) {
            if (handlers.activateAction) {
                handlers.activateAction(name);
            }
        });
    }

    // NOLINTEND(readability-identifier-naming)

private:
    SessionApplication& m_application;
};

SessionApplication::SessionApplication(const ProgramIdentity& identity)
    : m_identity(identity)
    , m_interface(std::make_unique<Interface>(*this))
{}

SessionApplication::~SessionApplication()
{
    auto bus = QDBusConnection::sessionBus();
    // Release the name first, so that a new process need not wait for this one to end.
    if (m_isFirst) {
        bus.unregisterService(m_identity.id);
    }
    bus.unregisterObject(m_identity.objectPath());
}

QObject& SessionApplication::busObject() const
{
    return *m_interface;
}

SessionApplication::Role SessionApplication::claim(const QList<QUrl>& files)
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return Role::NoBus;
    }
    // Register the object first: a caller that finds the name must also find the object.
    bus.registerObject(m_identity.objectPath(), m_interface.get(),
                       QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportAdaptors);
    const QDeadlineTimer deadline(patience);
    while (!deadline.hasExpired()) {
        const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply = bus.interface()->registerService(
            m_identity.id, QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
        if (!reply.isValid()) {
            return Role::NoBus;
        }
        if (reply.value() == QDBusConnectionInterface::ServiceRegistered) {
            m_isFirst = true;
            return Role::First;
        }
        const QDBusMessage answer = handedOver(files, deadline);
        if (answer.type() == QDBusMessage::ReplyMessage) {
            return Role::HandedOver;
        }
        if (!vanished(answer)) {
            return Role::Unanswered;
        }
        QThread::msleep(pause.count());
    }
    return Role::Unanswered;
}

SessionApplication::Role SessionApplication::handOver(const QList<QUrl>& files)
{
    if (!QDBusConnection::sessionBus().isConnected()) {
        return Role::NoBus;
    }
    const QDBusMessage answer = handedOver(files, QDeadlineTimer(patience));
    return answer.type() == QDBusMessage::ReplyMessage ? Role::HandedOver : Role::Unanswered;
}

QDBusMessage SessionApplication::callFor(const QList<QUrl>& files) const
{
    if (files.isEmpty()) {
        auto activate =
            QDBusMessage::createMethodCall(m_identity.id, m_identity.objectPath(), interfaceName, u"Activate"_s);
        activate.setArguments({QVariantMap()});
        activate.setAutoStartService(false);
        return activate;
    }
    QStringList uris;
    std::ranges::transform(files, std::back_inserter(uris),
                           [](const QUrl& url) { return QString::fromLatin1(fileUri(url.toLocalFile())); });
    auto open = QDBusMessage::createMethodCall(m_identity.id, m_identity.objectPath(), interfaceName, u"Open"_s);
    open.setArguments({uris, QVariantMap()});
    open.setAutoStartService(false);
    return open;
}

QDBusMessage SessionApplication::handedOver(const QList<QUrl>& files, const QDeadlineTimer& deadline) const
{
    return QDBusConnection::sessionBus().call(callFor(files), QDBus::Block, int(deadline.remainingTime()));
}

void SessionApplication::setHandlers(Handlers handlers)
{
    m_handlers = std::move(handlers);
    for (const Call& call : std::exchange(m_waiting, {})) {
        receive(call);
    }
}

void SessionApplication::receive(const Call& call)
{
    if (m_handlers) {
        call(*m_handlers);
    } else {
        m_waiting.push_back(call);
    }
}

} // namespace lapsa

#include "SessionApplication.moc"
