// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <optional>

namespace lapsa {

/// A method of the desktop portal that answers later, by a signal of a request object
/// (`org.freedesktop.portal.Request`). One object for one call; destroying it before the answer withdraws the request.
class PortalRequest final : public QObject
{
    Q_OBJECT

public:
    /// The results; nothing when the portal or the user refused, or nobody was there to ask.
    using Answer = std::optional<QVariantMap>;

    /// How long the bus waits for a service, where nothing else is said.
    static constexpr std::chrono::milliseconds usualPatience{25'000};

    /// Sends `call`, to which the options are added as the last argument. `patience` is for the portal to take the
    /// request, not for its answer. `answered` may destroy this object.
    PortalRequest(QDBusMessage call, QVariantMap options, std::function<void(const Answer&)> answered,
                  std::chrono::milliseconds patience = usualPatience);
    ~PortalRequest() override;

    [[nodiscard]] bool pending() const { return m_pending; }

    /// Whether there are no results because the user wanted none. False until the answer is there.
    [[nodiscard]] bool refusedByUser() const { return m_refusedByUser; }

private slots:
    void responded(uint response, const QVariantMap& results);

private:
    void listenTo(const QString& path);
    void stopListening();
    void replied(const QDBusMessage& reply);
    void finish(const Answer& answer);

    std::function<void(const Answer&)> m_answered;
    QString m_path;
    bool m_pending = true;
    bool m_refusedByUser = false;
};

} // namespace lapsa
