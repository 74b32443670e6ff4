// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaInterface.h"

#include "CallArguments.h"
#include "CallRecords.h"
#include "ListService.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QStringList>
#include <QVariantMap>

#include <InterfaceDescription.h>

#include <functional>
#include <optional>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// Calls received before the service; the start takes a moment only.
constexpr qsizetype mostKept = 1000;

void answer(const QDBusMessage& call, const QDBusMessage& reply)
{
    if (call.isReplyRequired()) {
        QDBusConnection::sessionBus().send(reply);
    }
}

void answer(const QDBusMessage& call, const QList<QVariantMap>& dictionaries)
{
    answer(call, call.createReply(QVariant::fromValue(dictionaries)));
}

void refuse(const QDBusMessage& call, const QString& reason)
{
    answer(call, call.createErrorReply(QDBusError::InvalidArgs, reason));
}

/// The answer to a call that names one item.
void answerWhether(const QDBusMessage& call, bool known)
{
    if (known) {
        answer(call, call.createReply());
    } else {
        refuse(call, u"There is no item with this id"_s);
    }
}

} // namespace

/// Every method answers by itself: some later, all with dictionaries.
class LapsaInterface::Adaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.lapsa.Lapsa1")
    Q_CLASSINFO("D-Bus Introspection", LAPSA1_DESCRIPTION)

public:
    explicit Adaptor(QObject& busObject)
        : QDBusAbstractAdaptor(&busObject)
    {}

    void serve(ListService& service)
    {
        m_service = &service;
        connect(&service, &ListService::itemsChanged, this, &Adaptor::ItemsChanged);
        connect(&service, &ListService::recoveryChanged, this, &Adaptor::RecoveryChanged);
        for (const Work& work : std::exchange(m_waiting, {})) {
            work(service);
        }
    }

    // NOLINTBEGIN(readability-identifier-naming): the names are given by the interface

public slots: // NOLINT(readability-redundant-access-specifiers): these are the methods on the bus

    void Items(const QDBusMessage& call)
    {
        receive(call, {}, [call](ListService& service) { answer(call, dictionariesOf(service.items())); });
    }

    void Add(const QStringList& uris, int minutes, const QDBusMessage& call)
    {
        const std::optional<QStringList> paths = pathsOfUris(uris);
        if (!paths || !areMinutes(minutes)) {
            call.setDelayedReply(true);
            refuse(call, paths ? u"The lifespan is 0 to 525600 minutes"_s
                               : u"Each of 1 to 10,000 URIs has to name a file of this machine"_s);
            return;
        }
        receive(call, u"asi"_s, [call, paths, minutes](ListService& service) {
            service.add(*paths, minutes, [call](const QList<ListService::AddOutcome>& outcomes) {
                answer(call, dictionariesOf(outcomes));
            });
        });
    }

    void Lock(const QString& id, bool locked, const QDBusMessage& call)
    {
        receive(call, u"sb"_s, [=](ListService& service) { answerWhether(call, service.setLocked(id, locked)); });
    }

    void Remove(const QString& id, const QDBusMessage& call)
    {
        receive(call, u"s"_s, [=](ListService& service) { answerWhether(call, service.takeOffTheList(id)); });
    }

    void Recovered(const QDBusMessage& call)
    {
        receive(call, {}, [call](ListService& service) { answer(call, dictionariesOf(service.recovered())); });
    }

    void PutBack(const QStringList& ids, const QDBusMessage& call)
    {
        const std::optional<QList<QUuid>> records = recordIds(ids);
        receive(call, u"as"_s, [call, records](ListService& service) {
            const auto done = [call, records](const QList<RecoveryResult>& results) {
                answer(call, dictionariesOf(*records, results));
            };
            if (!records || !service.putBack(*records, done)) {
                refuse(call, u"Each of 1 to 10,000 ids has to name another record"_s);
            }
        });
    }

signals:
    void ItemsChanged();
    void RecoveryChanged();

    // NOLINTEND(readability-identifier-naming)

private:
    using Work = std::function<void(ListService& service)>;

    void receive(const QDBusMessage& call, const QString& signature, const Work& work)
    {
        call.setDelayedReply(true);
        // The library lets a method without arguments be called with some.
        if (call.signature() != signature) {
            answer(call, call.createErrorReply(QDBusError::UnknownMethod, u"There are too many arguments"_s));
        } else if (m_service) {
            work(*m_service);
        } else if (m_waiting.size() < mostKept) {
            m_waiting.push_back(work);
        } else {
            answer(call, call.createErrorReply(QDBusError::LimitsExceeded, u"Lapsa is starting"_s));
        }
    }

    QPointer<ListService> m_service;
    /// Calls received before serve().
    QList<Work> m_waiting;
};

LapsaInterface::LapsaInterface(QObject& busObject)
    : m_adaptor(new Adaptor(busObject))
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

LapsaInterface::~LapsaInterface()
{
    delete m_adaptor;
}

void LapsaInterface::serve(ListService& service)
{
    m_adaptor->serve(service);
}

} // namespace lapsa

#include "LapsaInterface.moc"
